// The menu "Edit" on every kind of widget that can have the focus, by its keys and by the menu.
#include "app/AppDelegate.h"
#include "app/preview/CalibrationPreviewView.h"
#include "app/profile/CandidateTable.h"
#include "app/support/CalibrationTab.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>

namespace tessaly::tests {
namespace {

enum Command { cut, copy, paste, selectAll };
enum class Way { key, menu };

constexpr Qt::Key keys[] = {Qt::Key_X, Qt::Key_C, Qt::Key_V, Qt::Key_A};

class Editing : public CalibrationTab, public testing::WithParamInterface<Way> {
 protected:
  Editing() {
    tab.hide();
    delegate.applicationDidFinishLaunching();
    QApplication::clipboard()->setText("from elsewhere");
  }

  [[nodiscard]] MainWindowController& window() { return *delegate.windowController; }
  [[nodiscard]] QAction& item(Command command) {
    return *delegate.menuBar().actions()[1]->menu()->actions()[static_cast<qsizetype>(command)];
  }

  void focus(QWidget& widget) {
    window().tabs().setCurrentIndex(window().batch().isAncestorOf(&widget) ? 1 : 0);
    window().activateWindow();
    widget.setFocus();
    ASSERT_TRUE(waitUntil([&] { return QApplication::focusWidget() == &widget; })) << widget.metaObject()->className();
  }

  void give(Command command) {
    if (GetParam() == Way::menu) return item(command).trigger();
    QTest::keyClick(QApplication::focusWidget(), keys[command], Qt::ControlModifier);
  }

  [[nodiscard]] std::vector<bool> enabled() {
    return {item(cut).isEnabled(), item(copy).isEnabled(), item(paste).isEnabled(), item(selectAll).isEnabled()};
  }

  [[nodiscard]] static std::string clipboard() { return QApplication::clipboard()->text().toStdString(); }

  AppDelegate delegate{panels};
};

TEST_P(Editing, ChangesTheTextOfAField) {
  for (QLineEdit* field : {window().calibration().profileName, window().calibration().manualX,
                           window().calibration().confidenceThreshold}) {
    field->setText("98");
    focus(*field);
    EXPECT_EQ(enabled(), std::vector<bool>(4, true));
    give(selectAll);
    EXPECT_EQ(field->selectedText(), "98");
    give(copy);
    EXPECT_EQ(clipboard(), "98");
    give(cut);
    EXPECT_EQ(field->text(), "");
    give(paste);
    give(paste);
    EXPECT_EQ(field->text(), "9898");
  }
}

TEST_P(Editing, SelectsAllRowsOfTheTable) {
  CalibrationViewController& calibration = window().calibration();
  calibration.setFolder(folder());
  calibration.analyze();
  ASSERT_TRUE(waitUntil([&] { return !calibration.isBusy(); }));
  focus(*calibration.table);
  EXPECT_EQ(enabled(), (std::vector<bool>{false, false, false, true}));
  give(selectAll);
  EXPECT_EQ(calibration.table->selectedCandidates().size(), calibration.candidates().size());
  for (const Command command : {cut, copy, paste})
    give(command);
  EXPECT_EQ(calibration.table->selectedCandidates().size(), calibration.candidates().size());
}

TEST_P(Editing, CopiesWhatIsSelectedOfALabel) {
  window().calibration().setFolder("/a/folder");
  for (LocalizedLabel* label : {window().calibration().statusLabel, window().calibration().folderLabel,
                                window().batch().statusLabel, window().batch().outputLabel}) {
    focus(*label);
    ASSERT_TRUE(waitUntil([&] { return !label->text().isEmpty(); })) << "nothing before the tab is laid out";
    EXPECT_EQ(enabled(), (std::vector<bool>{false, true, false, true}));
    give(copy);
    EXPECT_EQ(clipboard(), "from elsewhere") << "nothing is selected";
    label->setSelection(0, 3);
    give(copy);
    EXPECT_EQ(clipboard(), label->stringValue().substr(0, 3));
    give(selectAll);
    give(copy);
    EXPECT_EQ(clipboard(), label->stringValue());
    const QString shown = label->text();
    give(cut);
    give(paste);
    EXPECT_EQ(label->text(), shown);
    QApplication::clipboard()->setText("from elsewhere");
  }
}

TEST_P(Editing, CopiesTheWholeOfALabelThatHasNoRoomForIt) {
  LocalizedLabel& label = *window().calibration().folderLabel;
  window().calibration().setFolder("/" + std::string(200, 'w') + "/" + std::string(250, 'x'));
  focus(label);
  give(selectAll);
  ASSERT_NE(label.selectedText().toStdString(), label.stringValue());
  give(copy);
  EXPECT_EQ(clipboard(), label.stringValue());
}

TEST_P(Editing, LeavesEverythingElseAlone) {
  const auto buttonOf = [](const QWidget& view) { return view.findChild<QPushButton*>(); };
  for (QWidget* widget : std::initializer_list<QWidget*>{
           window().calibration().previewView, window().calibration().analyzeButton, window().calibration().zoomSlider,
           buttonOf(window().calibration()), window().calibration().findChild<QComboBox*>(),
           window().batch().profilePopUp, window().batch().workersPopUp, window().batch().reloadButton,
           &window().settingsButton(), window().tabs().tabBar()}) {
    if (!widget->isEnabled()) continue;
    focus(*widget);
    EXPECT_EQ(enabled(), std::vector<bool>(4, false)) << widget->metaObject()->className();
    for (const Command command : {cut, copy, paste, selectAll})
      give(command);
    EXPECT_EQ(clipboard(), "from elsewhere");
  }
  EXPECT_TRUE(panels.alerts.empty());
}

TEST_P(Editing, MeansTheFieldThatTheMenuWasOpenedFrom) {
  QLineEdit& name = *window().calibration().profileName;
  name.setText("Body");
  focus(name);
  delegate.menuBar().setFocus(Qt::MenuBarFocusReason);
  EXPECT_EQ(enabled(), std::vector<bool>(4, true));
  name.setFocus();
  give(selectAll);
  EXPECT_EQ(name.selectedText(), "Body");
}

TEST_P(Editing, WorksInAnotherLanguageToo) {
  QLineEdit& name = *window().calibration().profileName;
  name.setText("Body");
  focus(name);
  speak(AppLanguage::french);
  EXPECT_EQ(item(selectAll).text().toStdString(), "Tout sélectionner");
  EXPECT_EQ(enabled(), std::vector<bool>(4, true));
  give(selectAll);
  EXPECT_EQ(name.selectedText(), "Body");
}

INSTANTIATE_TEST_SUITE_P(Ways, Editing, testing::Values(Way::key, Way::menu),
                         [](const auto& way) { return way.param == Way::key ? "Key" : "Menu"; });

}  // namespace
}  // namespace tessaly::tests
