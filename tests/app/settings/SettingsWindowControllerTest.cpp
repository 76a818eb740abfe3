#include "app/settings/SettingsWindowController.h"
#include "app/support/AppTest.h"
#include "app/support/FontSize.h"
#include "app/widgets/Metrics.h"
#include "calibration/FrameFolder.h"
#include "dng/DNGReader.h"
#include "localization/Localization.h"

#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <fstream>

namespace tessaly::tests {
namespace {

class Settings : public AppTest {
 protected:
  void saveProfile(const std::string& name) {
    FrameFolder frames;
    frames.add("a.dng", FrameFolder::brightLevel, {100, std::pair{1, 125}});
    CameraProfile profile = CameraProfile::empty(name, DNGReader::readMetadata(frames.path("a.dng")));
    profile.pixels.push_back({60, 30, 1, "Manually added by user"});
    ProfileStore::save(profile);
    AppPreferences::shared().notify();
  }

  AppPreferences& prefs = AppPreferences::shared();
  QWidget mainWindow;
  SettingsWindowController window{panels, mainWindow};

  ~Settings() override { Localization::setLanguageOverride(std::nullopt); }
};

TEST_F(Settings, ShowsTheDefaults) {
  EXPECT_EQ(window.windowTitle(), "Settings");
  EXPECT_EQ(window.language->currentText(), "English");
  EXPECT_EQ(window.appearance->currentText(), "Follow System");
  EXPECT_EQ(window.workers->currentText(), "Automatic");
  EXPECT_EQ(window.output->currentText(), "Inside source folder");
  EXPECT_EQ(window.outputPath->stringValue(), "No custom output folder selected");
  EXPECT_EQ(window.collision->currentText(), "Skip existing files");
  EXPECT_TRUE(window.autoOpen->isChecked());
  EXPECT_TRUE(window.saveLog->isChecked());
  EXPECT_EQ(window.profiles->currentText(), "No Camera Profiles");
}

TEST_F(Settings, StoresEveryEditAtOnce) {
  int told = 0;
  const auto registration = prefs.observe([&] { ++told; });
  window.workers->setCurrentIndex(4);
  window.output->setCurrentIndex(1);
  window.collision->setCurrentIndex(1);
  window.autoOpen->click();
  window.saveLog->click();
  window.appearance->setCurrentIndex(2);
  EXPECT_EQ(told, 6);
  EXPECT_EQ(prefs.workers(), 4);
  EXPECT_TRUE(prefs.useCustomOutput());
  EXPECT_EQ(prefs.existingOutputPolicy(), ExistingOutputPolicy::numberedCopy);
  EXPECT_FALSE(prefs.openAfterCompletion());
  EXPECT_FALSE(prefs.saveLog());
  EXPECT_EQ(prefs.appearance(), AppAppearance::dark);
}

TEST_F(Settings, AreRebuiltForALanguageAndForNothingElse) {
  const QPointer<QComboBox> before = window.appearance;
  window.appearance->setCurrentIndex(1);
  EXPECT_EQ(window.appearance, before);
  window.language->setCurrentIndex(3);
  EXPECT_NE(window.appearance, before);
  EXPECT_EQ(window.windowTitle(), "Réglages");
  EXPECT_EQ(window.language->currentText(), "Français");
  window.language->setCurrentIndex(2);
  window.language->setCurrentIndex(1);
  EXPECT_EQ(window.doneButton->text(), "Done");
}

TEST_F(Settings, KeepTheirPlaceScrollingAndFocusInAnotherLanguage) {
  const FontSize large(2);
  window.rebuild();
  window.showWindow();
  QCoreApplication::processEvents();
  window.move(30, 40);
  const QPoint place = window.pos();
  QScrollBar& bar = *window.findChild<QScrollArea*>()->verticalScrollBar();
  ASSERT_GT(bar.maximum(), 100);
  bar.setValue(100);
  window.language->setCurrentIndex(3);
  QCoreApplication::processEvents();
  EXPECT_EQ(window.pos(), place);
  EXPECT_EQ(bar.value(), 100);
  EXPECT_EQ(window.focusWidget(), window.language);
}

TEST_F(Settings, ChooseTheLanguageAlsoWhereTheProgramWasStartedInAnother) {
  Localization::setLanguageOverride(AppLanguage::french);
  window.rebuild();
  EXPECT_EQ(window.windowTitle(), "Réglages");
  window.appearance->setCurrentIndex(1);
  EXPECT_EQ(Localization::language(), AppLanguage::french);
  window.language->setCurrentIndex(2);
  EXPECT_EQ(Localization::language(), AppLanguage::chinese);
  EXPECT_EQ(window.windowTitle().toStdString(), Localization::text("Settings", AppLanguage::chinese));
}

TEST_F(Settings, OpenAlsoWhenProfilesCannotBeLoaded) {
  std::filesystem::create_directories(ProfileStore::directory());
  std::ofstream(ProfileStore::directory() / "broken.json") << "{";
  SettingsWindowController other(panels, mainWindow);
  EXPECT_EQ(other.profiles->currentText(), "No Camera Profiles");
  other.exportButton->click();
  EXPECT_EQ(panels.lastAlert(), "Select a profile to export.");
}

TEST_F(Settings, SetAsideAProfileThatCannotBeRead) {
  saveProfile("Body");
  window.showWindow();
  EXPECT_FALSE(window.profileFailure->isVisible());
  const std::filesystem::path broken = ProfileStore::directory() / "broken.json";
  std::ofstream(broken) << "{";
  prefs.notify();
  ASSERT_TRUE(window.setAsideButton->isVisible());
  EXPECT_TRUE(window.profileFailure->stringValue().starts_with("Unable to load camera profiles: " + broken.native()));
  window.setAsideButton->click();
  EXPECT_FALSE(window.setAsideButton->isVisible());
  EXPECT_FALSE(window.profileFailure->isVisible());
  EXPECT_EQ(window.profiles->currentText(), "Body");
  EXPECT_TRUE(std::filesystem::exists(broken.native() + ".unreadable"));
}

TEST_F(Settings, KeepTheSelectedProfileWhenAnotherComes) {
  saveProfile("Beta");
  saveProfile("Gamma");
  window.profiles->setCurrentIndex(1);
  const QString selected = window.profiles->currentText();
  saveProfile("Alpha");
  EXPECT_EQ(window.profiles->count(), 3);
  EXPECT_EQ(window.profiles->currentText(), selected);
}

TEST_F(Settings, ChangeNothingWhenAPanelIsCancelled) {
  saveProfile("Body");
  for (QPushButton* button : {window.chooseOutputButton, window.importButton, window.exportButton})
    button->click();
  QCoreApplication::processEvents();
  EXPECT_EQ(panels.asked.size(), 3U);
  EXPECT_TRUE(panels.alerts.empty());
  EXPECT_EQ(prefs.outputPath(), "");
  EXPECT_EQ(ProfileStore::loadAll().size(), 1U);
}

TEST_F(Settings, SayWhenAnExportFails) {
  saveProfile("Body");
  panels.answer = "/no/such/folder/backup.json";
  window.exportButton->click();
  ASSERT_TRUE(waitUntil([&] { return !panels.alerts.empty(); }));
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::critical);
  EXPECT_TRUE(panels.lastAlert().starts_with("backup.json: ")) << panels.lastAlert();
}

TEST_F(Settings, AreAsWideAsTheyShouldBeInEveryLanguage) {
  window.showWindow();
  for (int language = 0; language < 4; ++language) {
    window.language->setCurrentIndex(language);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.width(), Metrics::scaled(600));
    EXPECT_EQ(window.findChild<QScrollArea*>()->horizontalScrollBar()->maximum(), 0) << language;
  }
}

TEST_F(Settings, LeaveTheMainWindowUsable) {
  EXPECT_FALSE(window.isModal());
  EXPECT_EQ(window.parentWidget(), &mainWindow);
}

TEST_F(Settings, RememberACustomFolder) {
  const TemporaryFolder folder;
  panels.answer = folder.path();
  window.chooseOutputButton->click();
  ASSERT_TRUE(waitUntil([&] { return prefs.outputPath() == folder.path(); }));
  EXPECT_EQ(panels.asked.back().title, "Choose a default output folder");
  EXPECT_EQ(window.outputPath->stringValue(), folder.path().native());
}

TEST_F(Settings, RefuseAFolderThatIsNone) {
  panels.answer = "/no/such/folder";
  window.chooseOutput();
  ASSERT_TRUE(waitUntil([&] { return !panels.alerts.empty(); }));
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::critical);
  EXPECT_EQ(prefs.outputPath(), "");
}

TEST_F(Settings, AreResetWhenTheUserMeansIt) {
  window.workers->setCurrentIndex(2);
  panels.button = 0;
  window.resetButton->click();
  EXPECT_EQ(panels.lastAlert(), "Reset preferences?");
  EXPECT_EQ(panels.alerts.back().informativeText, "Camera profiles and photographs will be kept.");
  EXPECT_EQ(panels.alerts.back().buttons, (std::vector<std::string>{"Reset", "Cancel"}));
  EXPECT_EQ(panels.alerts.back().defaultButton, 1U);
  ASSERT_TRUE(waitUntil([&] { return prefs.workers() == 0; }));
  EXPECT_EQ(window.workers->currentIndex(), 0);
}

TEST_F(Settings, StayWhenTheResetIsCancelled) {
  window.workers->setCurrentIndex(2);
  panels.button = 1;
  window.resetButton->click();
  QCoreApplication::processEvents();
  EXPECT_EQ(prefs.workers(), 2);
}

TEST_F(Settings, ExportAndImportAProfile) {
  const TemporaryFolder folder;
  saveProfile("Body");
  EXPECT_EQ(window.profiles->currentText(), "Body");
  panels.answer = folder / "backup.json";
  window.exportButton->click();
  ASSERT_TRUE(waitUntil([&] { return panels.lastAlert() == "Profile exported."; }));
  EXPECT_EQ(panels.asked.back().proposedName, "Tessaly-Profile.json");
  window.importButton->click();
  ASSERT_TRUE(waitUntil([&] { return panels.lastAlert() == "Imported profile saved as a new copy."; }));
  EXPECT_EQ(window.profiles->count(), 2);
  EXPECT_EQ(ProfileStore::loadAll().size(), 2U);
}

TEST_F(Settings, RefuseToExportNothing) {
  window.exportButton->click();
  EXPECT_EQ(panels.lastAlert(), "Select a profile to export.");
  EXPECT_TRUE(panels.asked.empty());
}

TEST_F(Settings, RefuseAFileThatIsNoProfile) {
  const TemporaryFolder folder;
  std::ofstream(folder / "other.json") << "[]";
  panels.answer = folder / "other.json";
  window.importButton->click();
  ASSERT_TRUE(waitUntil([&] { return !panels.alerts.empty(); }));
  EXPECT_EQ(panels.lastAlert(), "other.json: This profile is invalid or uses an unsupported version.");
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::critical);
}

TEST_F(Settings, CloseByDoneEscapeAndControlW) {
  const auto closes = [&](const std::function<void()>& action) {
    window.showWindow();
    EXPECT_TRUE(waitUntil([&] { return window.isActiveWindow(); }));
    action();
    return !window.isVisible();
  };
  EXPECT_TRUE(closes([&] { window.doneButton->click(); }));
  EXPECT_TRUE(closes([&] { QTest::keyClick(&window, Qt::Key_Return); }));
  EXPECT_TRUE(closes([&] { QTest::keyClick(&window, Qt::Key_Escape); }));
  EXPECT_TRUE(closes([&] { QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier); }));
}

}  // namespace
}  // namespace tessaly::tests
