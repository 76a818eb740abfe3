// What is behind an alert does not hear its keys, even where it has the focus.
#include "app/AppDelegate.h"
#include "app/support/AppTest.h"
#include "app/widgets/AlertSheet.h"

#include <QApplication>

namespace tessaly::tests {
namespace {

class BehindAnAlert : public AppTest {
 protected:
  BehindAnAlert() {
    delegate.applicationDidFinishLaunching();
    window().calibration().analyzeButton->click();
  }

  [[nodiscard]] MainWindowController& window() { return *delegate.windowController; }
  [[nodiscard]] QList<AlertSheet*> alerts() { return window().findChildren<AlertSheet*>(); }

  /// Gives the focus back to the window, as some window managers let the user do.
  void focusBehind() {
    window().activateWindow();
    window().calibration().profileName->setFocus();
    ASSERT_TRUE(waitUntil([&] { return window().calibration().profileName->hasFocus(); }));
  }

  void press(const QKeySequence& pressed) { QTest::keySequence(window().calibration().profileName, pressed); }

  DesktopPanels desktop;
  AppDelegate delegate{desktop};
};

TEST_F(BehindAnAlert, NoShortcutWorks) {
  ASSERT_EQ(alerts().size(), 1);
  focusBehind();
  for (const auto& pressed :
       {Qt::CTRL | Qt::Key_S, Qt::CTRL | Qt::Key_Return, Qt::CTRL | Qt::Key_O, Qt::CTRL | Qt::Key_Comma})
    press(pressed);
  press(Qt::CTRL | Qt::Key_2);
  EXPECT_EQ(alerts().size(), 1);
  EXPECT_EQ(window().tabs().currentIndex(), 0);
  EXPECT_FALSE(delegate.settingsController);
  EXPECT_EQ(QApplication::activeModalWidget(), alerts()[0]);
}

TEST_F(BehindAnAlert, EveryShortcutWorksAgainAfterIt) {
  alerts()[0]->reject();
  focusBehind();
  press(Qt::CTRL | Qt::Key_2);
  EXPECT_EQ(window().tabs().currentIndex(), 1);
}

TEST_F(BehindAnAlert, TheKeysOfTheAlertWork) {
  QTest::keyClick(alerts()[0], Qt::Key_Return);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

}  // namespace
}  // namespace tessaly::tests
