// What can be used is seen where it ends, and what has the focus is seen to have it: looked at in the pixels.
#include "app/AppDelegate.h"
#include "app/profile/CandidateTable.h"
#include "app/support/AppTest.h"
#include "app/support/Contrast.h"
#include "app/widgets/AlertSheet.h"
#include "app/widgets/Theme.h"

#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <string>
#include <vector>

namespace tessaly::tests {
namespace {

std::string nameOf(const QWidget& widget) {
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  const QString text = button ? button->text() : widget.accessibleName();
  return QStringLiteral("%1 \"%2\"").arg(QLatin1String(widget.metaObject()->className()), text).toStdString();
}

QImage picture(QWidget& widget) {
  return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// The strongest contrast to `ground` among the outermost pixels of the left side, at half the height.
double edgeContrast(QWidget& widget, const QColor& ground) {
  constexpr int outermost = 3;
  const QImage image = picture(widget);
  double strongest = 1;
  for (int x = 0; x < outermost; ++x)
    strongest = std::max(strongest, contrastOf(image.pixelColor(x, image.height() / 2), ground));
  return strongest;
}

bool hasEdge(const QWidget& widget) {
  return qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QComboBox*>(&widget) ||
         qobject_cast<const QProgressBar*>(&widget) || qobject_cast<const QPushButton*>(&widget) ||
         qobject_cast<const QTableView*>(&widget);
}

class Looks : public AppTest, public testing::WithParamInterface<AppAppearance> {
 protected:
  Looks() {
    AppPreferences::shared().setAppearance(GetParam());
    delegate.applicationDidFinishLaunching();
    delegate.showSettings();
  }

  ~Looks() override {
    AppPreferences::shared().reset();
    applyAppAppearance();
  }

  /// What can be used in a tab of the main window or in the settings, and is in view.
  [[nodiscard]] std::vector<QWidget*> shown(QWidget& window) const {
    QCoreApplication::processEvents();
    std::vector<QWidget*> result;
    for (QWidget* widget : window.findChildren<QWidget*>())
      if (widget->isVisible() && widget->isEnabled() && widget->window() == &window) result.push_back(widget);
    return result;
  }

  void expectEdges(QWidget& window) {
    constexpr double seen = 3;
    for (QWidget* widget : shown(window)) {
      if (!hasEdge(*widget)) continue;
      widget->clearFocus();
      const QPalette& palette = widget->palette();
      EXPECT_GE(edgeContrast(*widget, palette.color(QPalette::Window)), seen) << nameOf(*widget);
      const auto* button = qobject_cast<const QPushButton*>(widget);
      if (button && button->isDefault()) continue;
      EXPECT_GE(edgeContrast(*widget, palette.color(QPalette::Base)), seen) << nameOf(*widget);
    }
  }

  void expectFocusSeen(QWidget& window) {
    const std::vector<QWidget*> widgets = shown(window);
    window.activateWindow();
    ASSERT_TRUE(waitUntil([&] { return window.isActiveWindow() && QApplication::activeWindow() == &window; }));
    for (QWidget* widget : widgets) {
      if (!(widget->focusPolicy() & Qt::TabFocus) || widget->focusProxy()) continue;
      if (QWidget* focus = QApplication::focusWidget()) focus->clearFocus();
      const QImage without = picture(*widget);
      widget->setFocus(Qt::OtherFocusReason);
      ASSERT_TRUE(widget->hasFocus()) << nameOf(*widget);
      EXPECT_GE(pixelsOf(picture(*widget), without), 2 * (widget->height() - 8)) << nameOf(*widget);
    }
  }

  /// How many pixels changed enough to be noticed.
  [[nodiscard]] static int pixelsOf(const QImage& with, const QImage& without) {
    constexpr double noticed = 1.5;
    int count = 0;
    for (int y = 0; y < with.height(); ++y)
      for (int x = 0; x < with.width(); ++x)
        count += contrastOf(with.pixelColor(x, y), without.pixelColor(x, y)) >= noticed;
    return count;
  }

  AppDelegate delegate{panels};
};

TEST_P(Looks, ShowWhereFieldsBarsAndTablesEnd) {
  for (const int tab : {0, 1}) {
    delegate.windowController->tabs().setCurrentIndex(tab);
    expectEdges(*delegate.windowController);
  }
  expectEdges(*delegate.settingsController);
}

TEST_P(Looks, ShowTheFocusOfEverythingThatCanHaveIt) {
  for (const int tab : {0, 1}) {
    delegate.windowController->tabs().setCurrentIndex(tab);
    expectFocusSeen(*delegate.windowController);
  }
  expectFocusSeen(*delegate.settingsController);
}

INSTANTIATE_TEST_SUITE_P(Appearances, Looks, testing::Values(AppAppearance::light, AppAppearance::dark),
                         [](const auto& look) { return look.param == AppAppearance::dark ? "Dark" : "Light"; });

}  // namespace
}  // namespace tessaly::tests
