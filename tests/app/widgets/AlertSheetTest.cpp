#include "app/support/AppTest.h"
#include "app/widgets/AlertSheet.h"
#include "app/widgets/LocalizeView.h"
#include "localization/Shown.h"

#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

namespace tessaly::tests {
namespace {

class AlertSheets : public AppTest {
 protected:
  AlertSheets() { window.show(); }

  void show(Alert alert) {
    AlertSheet::show(window, std::move(alert), [this](std::size_t button) { answers.push_back(button); });
  }

  void say(const std::string& text) { show(sentence(Alert::Style::informational, text)); }

  static Alert question() {
    Alert alert = sentence(Alert::Style::warning, "Reset preferences?");
    alert.informativeText = "Camera profiles and photographs will be kept.";
    alert.buttons = {"Reset", "Cancel"};
    alert.defaultButton = 1;
    return alert;
  }

  /// The one that is on the screen.
  [[nodiscard]] AlertSheet* visible() const {
    for (AlertSheet* sheet : window.findChildren<AlertSheet*>())
      if (sheet->isVisible()) return sheet;
    return nullptr;
  }

  [[nodiscard]] QList<QPushButton*> buttons() const { return visible()->findChildren<QPushButton*>(); }
  [[nodiscard]] QList<LocalizedLabel*> labels() const { return visible()->findChildren<LocalizedLabel*>(); }

  QWidget window;
  std::vector<std::size_t> answers;
};

TEST_F(AlertSheets, BlockEveryWindow) {
  for (const char* text : {"Profile exported.", "Select a profile to export."})
    say(text);
  for (int alert = 0; alert < 2; ++alert) {
    ASSERT_TRUE(visible());
    EXPECT_EQ(visible()->windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(QApplication::activeModalWidget(), visible());
    buttons()[0]->click();
  }
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(AlertSheets, TellWhichButtonWasPressed) {
  for (const std::size_t pressed : {std::size_t{0}, std::size_t{1}}) {
    show(question());
    buttons()[static_cast<qsizetype>(pressed)]->click();
    EXPECT_EQ(answers.back(), pressed);
    EXPECT_FALSE(visible());
  }
}

TEST_F(AlertSheets, AreAnsweredOnceByADoubleClick) {
  show(question());
  QPushButton& button = *buttons()[0];
  button.click();
  button.click();
  EXPECT_EQ(answers, std::vector<std::size_t>{0});
}

TEST_F(AlertSheets, TakeReturnAndEscapeForTheDefaultButton) {
  for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
    show(question());
    QTest::keyClick(visible(), key);
    ASSERT_FALSE(answers.empty());
    EXPECT_EQ(answers.back(), 1U);
    answers.clear();
  }
}

TEST_F(AlertSheets, StartWithTheFocusOnTheDefaultButton) {
  show(question());
  ASSERT_TRUE(visible()->focusWidget());
  EXPECT_EQ(visible()->focusWidget(), buttons()[1]);
}

TEST_F(AlertSheets, TakeAClosedWindowForTheDefaultButton) {
  show(question());
  visible()->close();
  EXPECT_EQ(answers, std::vector<std::size_t>{1});
}

TEST_F(AlertSheets, WaitForTheOneBefore) {
  say("Profile exported.");
  say("Select a profile to export.");
  EXPECT_EQ(labels()[0]->stringValue(), "Profile exported.");
  buttons()[0]->click();
  ASSERT_TRUE(visible());
  EXPECT_EQ(labels()[0]->stringValue(), "Select a profile to export.");
  buttons()[0]->click();
  EXPECT_FALSE(visible());
}

TEST_F(AlertSheets, WaitAlsoWhenAnAnswerAsksAgain) {
  AlertSheet::show(window, question(), [this](std::size_t) { say("Choose an input folder."); });
  say("Profile exported.");
  buttons()[0]->click();
  EXPECT_EQ(labels()[0]->stringValue(), "Profile exported.");
  buttons()[0]->click();
  EXPECT_EQ(labels()[0]->stringValue(), "Choose an input folder.");
}

TEST_F(AlertSheets, AreNotAnsweredWhenTheirWindowGoes) {
  {
    QWidget other;
    other.show();
    AlertSheet::show(other, question(), [this](std::size_t button) { answers.push_back(button); });
  }
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(answers.empty());
}

TEST_F(AlertSheets, ShowNamesAsTheyAre) {
  Alert alert;
  alert.text = [] { return std::string("<b>x</b> & y.dng"); };
  show(alert);
  EXPECT_EQ(labels()[0]->text(), "<b>x</b> & y.dng");
  EXPECT_EQ(labels()[0]->textFormat(), Qt::PlainText);
}

TEST_F(AlertSheets, BreakAPathThatIsWiderThanTheyAre) {
  const std::string path = "/" + std::string(200, 'w') + "/photographs";
  Alert alert;
  alert.text = [path] { return "Saved\n\n" + path; };
  show(alert);
  const LocalizedLabel& label = *labels()[0];
  for (const QString& line : label.text().split(QLatin1Char('\n')))
    EXPECT_LE(label.fontMetrics().horizontalAdvance(line), label.width());
  EXPECT_EQ(label.stringValue(), "Saved\n\n" + path);
}

TEST_F(AlertSheets, LetTheirTextBeSelected) {
  show(question());
  ASSERT_EQ(labels().size(), 2);
  for (const LocalizedLabel* label : labels())
    EXPECT_TRUE(label->textInteractionFlags() & Qt::TextSelectableByMouse);
}

TEST_F(AlertSheets, HaveRoomForAShortTextAndScrollALongOne) {
  say("Profile exported.");
  const auto scrolls = [this] { return visible()->findChild<QScrollArea*>()->verticalScrollBar()->maximum() > 0; };
  EXPECT_FALSE(scrolls());
  buttons()[0]->click();
  Alert alert;
  alert.text = [] {
    std::string lines;
    for (int line = 0; line < 200; ++line)
      lines += "IMG_0001.DNG: Some reason why this file could not be repaired.\n";
    return lines;
  };
  show(alert);
  EXPECT_TRUE(scrolls());
  const int screen = visible()->screen()->availableGeometry().height();
  EXPECT_LE(visible()->findChild<QScrollArea*>()->height(), screen * 6 / 10);
  EXPECT_LE(visible()->height(), screen * 8 / 10);
}

TEST_F(AlertSheets, FollowTheLanguageWhileTheyAreOpen) {
  show(question());
  for (const AppLanguage language : {AppLanguage::french, AppLanguage::chinese, AppLanguage::english}) {
    AppPreferences::shared().setLanguage(language);
    localizeView(*visible());
    EXPECT_EQ(labels()[0]->stringValue(), Localization::shownText("Reset preferences?", language));
    EXPECT_EQ(labels()[1]->stringValue(),
              Localization::text("Camera profiles and photographs will be kept.", language));
    EXPECT_EQ(buttons()[0]->text().toStdString(), Localization::text("Reset", language));
    EXPECT_EQ(buttons()[1]->text().toStdString(), Localization::text("Cancel", language));
  }
}

}  // namespace
}  // namespace tessaly::tests
