// Nothing is cut off: not at the smallest size, in any language, nor with a font of twice the size.
#include "app/AppDelegate.h"
#include "app/profile/CandidateTable.h"
#include "app/support/AppTest.h"
#include "app/support/FontSize.h"
#include "app/widgets/QtText.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QScrollArea>
#include <string>
#include <vector>

namespace tessaly::tests {
namespace {

/// Visible labels, buttons and pop-ups that are smaller than what they say. Labels that elide by themselves are not
/// meant; they tell the rest in their tool tip.
std::vector<std::string> cutOff(const QWidget& window) {
  std::vector<std::string> result;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible()) continue;
    const auto* label = qobject_cast<const QLabel*>(widget);
    const auto* localized = qobject_cast<const LocalizedLabel*>(widget);
    if (localized && localized->keepsToolTip()) continue;
    if (!label && !qobject_cast<const QAbstractButton*>(widget) && !qobject_cast<const QComboBox*>(widget)) continue;
    const bool wraps = label && label->wordWrap();
    const QSize needed = wraps ? QSize(0, label->heightForWidth(label->width())) : widget->minimumSizeHint();
    if (widget->width() >= needed.width() && widget->height() >= needed.height()) continue;
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    if (button && button->text().isEmpty()) continue;  // the arrows of a tab bar
    const QString name = label ? label->text() : button ? button->text() : widget->accessibleName();
    result.push_back(QStringLiteral("%1 (%2): %3 x %4 of %5 x %6")
                         .arg(name, QLatin1String(widget->metaObject()->className()))
                         .arg(widget->width())
                         .arg(widget->height())
                         .arg(needed.width())
                         .arg(needed.height())
                         .toStdString());
  }
  return result;
}

/// Places where two widgets of one parent lie over each other, or outside their parent.
std::vector<std::string> misplaced(const QWidget& window) {
  std::vector<std::string> result;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    if (!button || !button->isVisible() || button->text().isEmpty()) continue;
    if (!button->parentWidget()->rect().contains(button->geometry())) result.push_back(button->text().toStdString());
  }
  return result;
}

class Layout : public AppTest, public testing::WithParamInterface<double> {
 protected:
  FontSize size{GetParam()};
};

TEST_P(Layout, CutsNothingOffAtTheSmallestSize) {
  AppDelegate delegate(panels);
  delegate.applicationDidFinishLaunching();
  delegate.showSettings();
  MainWindowController& window = *delegate.windowController;
  for (const AppLanguage language : {AppLanguage::english, AppLanguage::chinese, AppLanguage::french}) {
    delegate.settingsController->language->setCurrentIndex(static_cast<int>(language));
    window.resize(window.minimumSize());
    for (int tab = 0; tab < 2; ++tab) {
      window.tabs().setCurrentIndex(tab);
      QCoreApplication::processEvents();
      EXPECT_EQ(cutOff(window), std::vector<std::string>()) << rawValue(language) << tab;
      EXPECT_EQ(misplaced(window), std::vector<std::string>()) << rawValue(language) << tab;
    }
    EXPECT_EQ(cutOff(*delegate.settingsController), std::vector<std::string>()) << rawValue(language);
  }
}

/// Whether all of the widget is inside the window's client area.
bool isInView(const QWidget& widget) {
  const QRect place(widget.mapTo(widget.window(), QPoint()), widget.size());
  return widget.isVisible() && widget.window()->rect().contains(place) &&
         widget.visibleRegion().boundingRect() == widget.rect();
}

/// What a screen of 1280 × 720 leaves to a window with its frame; the same as 1920 × 1080 at 150 %.
constexpr QSize smallScreen(1280, 660);

TEST_P(Layout, KeepsTheMainActionsInViewOnASmallScreen) {
  AppDelegate delegate(panels);
  delegate.applicationDidFinishLaunching();
  delegate.showSettings();
  MainWindowController& window = *delegate.windowController;
  window.setMinimumSize(0, 0);
  for (const AppLanguage language : {AppLanguage::english, AppLanguage::chinese, AppLanguage::french}) {
    delegate.settingsController->language->setCurrentIndex(static_cast<int>(language));
    window.resize(smallScreen);
    window.tabs().setCurrentIndex(0);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.size(), smallScreen);
    for (const QWidget* control : QList<QWidget*>{window.calibration().analyzeButton, window.calibration().progress,
                                                  window.calibration().profileName, window.calibration().statusLabel})
      EXPECT_TRUE(isInView(*control)) << rawValue(language) << control->accessibleName().toStdString();
    for (const QPushButton* button : window.calibration().findChildren<QPushButton*>()) {
      if (button->text() != localized("Save Camera Profile")) continue;
      EXPECT_TRUE(isInView(*button)) << rawValue(language);
    }
    window.tabs().setCurrentIndex(1);
    QCoreApplication::processEvents();
    for (const QWidget* control : QList<QWidget*>{window.batch().startButton, window.batch().stopButton,
                                                  window.batch().openButton, window.batch().statusLabel})
      EXPECT_TRUE(isInView(*control)) << rawValue(language) << control->accessibleName().toStdString();
    for (const QWidget* control :
         QList<QWidget*>{delegate.settingsController->doneButton, delegate.settingsController->resetButton})
      EXPECT_TRUE(isInView(*control)) << rawValue(language);
  }
}

/// The widths of labels and table columns that elide: room for ten characters at least.
TEST_P(Layout, LeavesTenCharactersOfWhatElides) {
  constexpr int fewest = 10;
  AppDelegate delegate(panels);
  delegate.applicationDidFinishLaunching();
  MainWindowController& window = *delegate.windowController;
  for (const AppLanguage language : {AppLanguage::english, AppLanguage::chinese, AppLanguage::french}) {
    speak(language);
    window.resize(window.minimumSize());
    for (int tab = 0; tab < 2; ++tab) {
      window.tabs().setCurrentIndex(tab);
      QCoreApplication::processEvents();
      for (const LocalizedLabel* label : window.findChildren<LocalizedLabel*>()) {
        if (!label->isVisible() || !label->keepsToolTip()) continue;
        EXPECT_GE(label->width(), label->fontMetrics().averageCharWidth() * fewest) << label->stringValue();
      }
    }
    const CandidateTable& table = *window.calibration().table;
    EXPECT_GE(table.columnWidth(CandidateTableModel::reason), table.fontMetrics().averageCharWidth() * fewest);
  }
}

INSTANTIATE_TEST_SUITE_P(Fonts, Layout, testing::Values(1.0, 2.0));

}  // namespace
}  // namespace tessaly::tests
