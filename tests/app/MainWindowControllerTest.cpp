#include "app/MainWindowController.h"
#include "app/profile/CandidateTable.h"
#include "app/support/AppTest.h"
#include "app/support/FontSize.h"
#include "app/widgets/AlertSheet.h"
#include "app/widgets/Metrics.h"
#include "app/widgets/WindowState.h"
#include "localization/Localization.h"

#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <memory>

namespace tessaly::tests {
namespace {

constexpr QSize smallest(1080, 700);

QRect available() {
  return QApplication::primaryScreen()->availableGeometry();
}

QSize mostOf(const QRect& screen) {
  return screen.size() * 0.9;
}

class MainWindow : public AppTest {
 protected:
  MainWindow() {
    for (const char* key : {"place", "maximized", "tab", "splitter", "tableColumns"})
      WindowState::setValue(key, QVariant());
  }

  MainWindowController& open() {
    window = std::make_unique<MainWindowController>(panels);
    window->showWindow();
    return *window;
  }

  MainWindowController& reopen() {
    window->close();
    return open();
  }

  [[nodiscard]] QScrollArea& areaOf(int tab) const { return *qobject_cast<QScrollArea*>(window->tabs().widget(tab)); }

  std::unique_ptr<MainWindowController> window;
};

TEST_F(MainWindow, OpensInTheMiddleOfTheScreenTheFirstTime) {
  open();
  EXPECT_EQ(window->size(), QSize(1280, 820).boundedTo(mostOf(available())));
  EXPECT_EQ(window->geometry().center(), available().center());
  EXPECT_EQ(window->tabs().currentIndex(), 0);
}

TEST_F(MainWindow, HasASmallestSizeThatGrowsWithTheFontAsFarAsTheScreenGoes) {
  open();
  EXPECT_EQ(window->minimumSize(), smallest.boundedTo(mostOf(available())));
  const FontSize large(2);
  QCoreApplication::processEvents();
  const QSize grown(Metrics::scaled(smallest.width()), Metrics::scaled(smallest.height()));
  EXPECT_GT(grown.width(), smallest.width());
  EXPECT_EQ(window->minimumSize(), grown.boundedTo(mostOf(available())));
}

TEST_F(MainWindow, KeepsHeadingsLargerThanTheRestWhenTheFontChanges) {
  open();
  const LocalizedLabel* heading = nullptr;
  for (const LocalizedLabel* label : window->batch().findChildren<LocalizedLabel*>())
    if (label->sourceText() == "Batch Repair DNG") heading = label;
  ASSERT_TRUE(heading);
  const double before = heading->font().pointSizeF();
  const FontSize large(2);
  QCoreApplication::processEvents();
  EXPECT_NEAR(heading->font().pointSizeF(), 2 * before, 0.5);
}

TEST_F(MainWindow, ShowsBothTabsWholeAtTheSmallestSizeInEveryLanguage) {
  open();
  window->resize(smallest);
  for (const AppLanguage language : {AppLanguage::english, AppLanguage::chinese, AppLanguage::french}) {
    AppPreferences::shared().setLanguage(language);
    window->refreshLanguage();
    for (int tab = 0; tab < 2; ++tab) {
      window->tabs().setCurrentIndex(tab);
      QCoreApplication::processEvents();
      EXPECT_EQ(areaOf(tab).horizontalScrollBar()->maximum(), 0) << rawValue(language) << tab;
      EXPECT_EQ(areaOf(tab).verticalScrollBar()->maximum(), 0) << rawValue(language) << tab;
    }
  }
}

TEST_F(MainWindow, ShowsBothTabsWholeWithALargeFontOnALargeScreen) {
  const FontSize large(2);
  open();
  AppPreferences::shared().setLanguage(AppLanguage::french);
  window->refreshLanguage();
  window->resize(Metrics::scaled(smallest.width()), Metrics::scaled(smallest.height()));
  for (int tab = 0; tab < 2; ++tab) {
    window->tabs().setCurrentIndex(tab);
    QCoreApplication::processEvents();
    EXPECT_EQ(areaOf(tab).horizontalScrollBar()->maximum(), 0) << tab;
    EXPECT_EQ(areaOf(tab).verticalScrollBar()->maximum(), 0) << tab;
  }
}

TEST_F(MainWindow, ScrollsATabThatTheScreenHasNoRoomFor) {
  const FontSize large(2);
  open();
  window->resize(window->minimumSize());
  QCoreApplication::processEvents();
  ASSERT_LT(window->width(), Metrics::scaled(smallest.width()));
  EXPECT_GT(areaOf(0).horizontalScrollBar()->maximum(), 0);
}

TEST_F(MainWindow, SwitchesItsTabsByKeysAndTakesTheFocusAlong) {
  open();
  const auto focusIsIn = [](const QWidget& tab) {
    return QApplication::focusWidget() && tab.isAncestorOf(QApplication::focusWidget());
  };
  ASSERT_TRUE(waitUntil([&] { return focusIsIn(window->calibration()); }));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_2, Qt::ControlModifier);
  EXPECT_EQ(window->tabs().currentIndex(), 1);
  EXPECT_TRUE(focusIsIn(window->batch()));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_1, Qt::ControlModifier);
  EXPECT_EQ(window->tabs().currentIndex(), 0);
  EXPECT_TRUE(focusIsIn(window->calibration()));
}

TEST_F(MainWindow, AsksForTheSettingsByItsButton) {
  int asked = 0;
  open();
  QObject::connect(window.get(), &MainWindowController::settingsRequested, [&] { ++asked; });
  QTest::mouseClick(&window->settingsButton(), Qt::LeftButton);
  QTest::keyClick(&window->settingsButton(), Qt::Key_Space);
  EXPECT_EQ(asked, 2);
}

TEST_F(MainWindow, ReopensWhereItWas) {
  open().setGeometry(20, 30, 750, 740);
  window->tabs().setCurrentIndex(1);
  reopen();
  EXPECT_EQ(window->geometry(), QRect(20, 30, 750, 740));
  EXPECT_EQ(window->tabs().currentIndex(), 1);
}

TEST_F(MainWindow, ReopensInTheMiddleWhenItsScreenIsGone) {
  WindowState::setValue("place", QRect(5000, 5000, 760, 730));
  open();
  EXPECT_EQ(window->size(), QSize(760, 730));
  EXPECT_EQ(window->geometry().center(), available().center());
}

TEST_F(MainWindow, ReopensAsLargeAsTheScreenWhenItWas) {
  open().showMaximized();
  QCoreApplication::processEvents();
  EXPECT_TRUE(reopen().isMaximized());
  window->showNormal();
  EXPECT_FALSE(reopen().isMaximized());
}

TEST_F(MainWindow, ReopensWhateverSomebodyWroteIntoTheSettings) {
  for (const char* key : {"place", "maximized", "tab", "splitter", "tableColumns"})
    WindowState::setValue(key, "nonsense");
  open();
  EXPECT_EQ(window->tabs().currentIndex(), 0);
  WindowState::setValue("tab", 7);
  window.reset();
  open();
  EXPECT_EQ(window->tabs().currentIndex(), 0);
}

TEST_F(MainWindow, KeepsHowItsFirstTabIsDivided) {
  open().resize(1400, 740);
  QCoreApplication::processEvents();
  auto* splitter = window->calibration().findChild<QSplitter*>();
  ASSERT_TRUE(splitter);
  const QList<int> before = splitter->sizes();
  splitter->setSizes({before[0] + 60, before[1] - 60});
  const QList<int> divided = splitter->sizes();
  ASSERT_NE(divided, before);
  reopen().resize(1400, 740);
  QCoreApplication::processEvents();
  EXPECT_EQ(window->calibration().findChild<QSplitter*>()->sizes(), divided);
}

TEST_F(MainWindow, ComesBackFromTheTaskBarToShowTheRunningBatch) {
  open().showMinimized();
  window->showRunningBatch();
  EXPECT_FALSE(window->isMinimized());
  EXPECT_EQ(window->tabs().currentIndex(), 1);
}

TEST_F(MainWindow, TranslatesAnAlertThatIsOpen) {
  AlertSheet::show(open(), sentence(Alert::Style::informational, "Choose an input folder."), {});
  const auto* sheet = window->findChild<AlertSheet*>();
  ASSERT_TRUE(sheet);
  AppPreferences::shared().setLanguage(AppLanguage::french);
  window->refreshLanguage();
  EXPECT_EQ(sheet->findChild<LocalizedLabel*>()->stringValue(),
            Localization::text("Choose an input folder.", AppLanguage::french));
}

}  // namespace
}  // namespace tessaly::tests
