#include "app/batch/BatchViewController.h"
#include "app/support/AppTest.h"
#include "app/support/Gate.h"
#include "batch/OutputFolderAccess.h"
#include "calibration/FrameFolder.h"
#include "dng/DNGReader.h"

#include <gmock/gmock.h>

#include <fstream>

namespace tessaly::tests {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class BatchTab : public AppTest {
 protected:
  static CameraProfile profileOf(const fs::path& file, const std::string& name) {
    CameraProfile profile = CameraProfile::empty(name, DNGReader::readMetadata(file));
    profile.pixels.push_back({60, 30, 1, "Manually added by user"});
    return profile;
  }

  void addPhotographs(int count) {
    for (int i = 1; i <= count; ++i)
      photographs.add("p" + std::to_string(i) + ".dng", FrameFolder::brightLevel, {100, std::pair{1, 125}});
    input = photographs.path("p1.dng").parent_path();
    profile = profileOf(photographs.path("p1.dng"), "Body");
    ProfileStore::save(profile);
  }

  /// The tab with a profile and photographs chosen.
  BatchViewController& makeTab(int count = 3) {
    addPhotographs(count);
    tab = std::make_unique<BatchViewController>(panels);
    tab->show();
    tab->setInput(input);
    EXPECT_TRUE(
        waitUntil([&] { return status() == "Found " + std::to_string(count) + " DNG files in the input folder."; }));
    return *tab;
  }

  void finish() {
    ASSERT_TRUE(waitUntil([&] { return !tab->isProcessing(); }));
  }

  [[nodiscard]] std::string status() const { return tab->statusLabel->stringValue(); }
  [[nodiscard]] fs::path results() const { return input / "Tessaly Results"; }

  FrameFolder photographs;
  fs::path input;
  CameraProfile profile;
  std::unique_ptr<BatchViewController> tab;
};

TEST_F(BatchTab, SaysWhatIsMissingWithoutProfiles) {
  BatchViewController empty(panels);
  EXPECT_EQ(empty.profilePopUp->currentText(), "No Camera Profiles");
  EXPECT_EQ(empty.statusLabel->stringValue(), "Create a profile from calibration DNG files before batch repair.");
  EXPECT_EQ(empty.inputLabel->stringValue(), "Not selected");
  EXPECT_EQ(empty.outputLabel->stringValue(), "Created inside the input folder if not selected");
  EXPECT_FALSE(empty.stopButton->isEnabled());
  empty.startButton->click();
  EXPECT_EQ(panels.lastAlert(), "Create and save a camera profile first.");
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::informational);
}

TEST_F(BatchTab, StartsWithAHintWhereThereAreProfiles) {
  addPhotographs(1);
  BatchViewController fresh(panels);
  EXPECT_EQ(fresh.profilePopUp->currentText(), "Body");
  EXPECT_EQ(fresh.statusLabel->stringValue(), "Confirm and save defect locations in Create Camera Profile first.");
  fresh.startButton->click();
  EXPECT_EQ(panels.lastAlert(), "Choose an input folder.");
}

TEST_F(BatchTab, TellsOfProfilesThatCannotBeLoaded) {
  fs::create_directories(ProfileStore::directory());
  std::ofstream(ProfileStore::directory() / "broken.json") << "{";
  BatchViewController broken(panels);
  EXPECT_THAT(
      broken.statusLabel->stringValue(),
      StartsWith("Unable to load camera profiles: " + (ProfileStore::directory() / "broken.json").string() + ": "));
  EXPECT_EQ(broken.profilePopUp->currentText(), "No Camera Profiles");
}

TEST_F(BatchTab, SetsAsideAProfileThatCannotBeRead) {
  addPhotographs(1);
  std::ofstream(ProfileStore::directory() / "broken.json") << "{";
  tab = std::make_unique<BatchViewController>(panels);
  tab->show();
  ASSERT_TRUE(tab->setAsideButton->isVisible());
  EXPECT_EQ(tab->profilePopUp->currentText(), "No Camera Profiles");
  tab->setAsideButton->click();
  EXPECT_FALSE(tab->setAsideButton->isVisible());
  EXPECT_EQ(tab->profilePopUp->currentText(), "Body");
  EXPECT_EQ(status(), "Choose an input folder.");
  EXPECT_TRUE(fs::exists(ProfileStore::directory() / "broken.json.unreadable"));
  EXPECT_TRUE(panels.alerts.empty());
}

TEST_F(BatchTab, OffersNothingToSetAsideWhereNoFileIsAtFault) {
  makeTab(1);
  EXPECT_FALSE(tab->setAsideButton->isVisible());
  fs::remove_all(ProfileStore::directory());
  std::ofstream(ProfileStore::directory()) << "a file where the folder belongs";
  tab->reloadProfiles();
  EXPECT_THAT(status(), StartsWith("Unable to load camera profiles: "));
  EXPECT_FALSE(tab->setAsideButton->isVisible());
}

TEST_F(BatchTab, CountsTheCandidatesOfTheChosenFolder) {
  makeTab(2);
  EXPECT_EQ(tab->inputLabel->stringValue(), input.native());
  EXPECT_EQ(tab->outputLabel->stringValue(), "Default: " + results().native());
  const TemporaryFolder none;
  panels.answer = none.path();
  tab->inputButton->click();
  EXPECT_EQ(panels.asked.back().title, "Choose Source DNG Folder");
  ASSERT_TRUE(waitUntil([&] {
    return status() == "No DNG files found. Select the folder that directly contains the source DNG files.";
  }));
}

TEST_F(BatchTab, EndsABatchOfAnEmptyFolderWithItsOneFailure) {
  makeTab();
  const TemporaryFolder none;
  tab->setInput(none.path());
  tab->startButton->click();
  finish();
  EXPECT_THAT(panels.lastAlert(), HasSubstr("Failed: 1"));
  EXPECT_THAT(panels.lastAlert(), HasSubstr("No DNG files were found at the top level of the selected folder."));
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::warning);
}

TEST_F(BatchTab, OpensTheFolderWhenItsAlertIsClosed) {
  makeTab();
  tab->startButton->click();
  finish();
  QCoreApplication::processEvents();
  EXPECT_TRUE(panels.opened.empty());
  panels.answerLast(0);
  EXPECT_EQ(panels.opened, std::vector{results()});
}

TEST_F(BatchTab, RepairsTheFolder) {
  makeTab();
  panels.button = 0;
  tab->startButton->click();
  EXPECT_TRUE(tab->isProcessing());
  EXPECT_EQ(status(), "Preparing…");
  for (const QWidget* control :
       std::initializer_list<QWidget*>{tab->profilePopUp, tab->reloadButton, tab->inputButton, tab->outputButton,
                                       tab->defaultOutputButton, tab->workersPopUp, tab->startButton, tab->openButton})
    EXPECT_FALSE(control->isEnabled());
  EXPECT_TRUE(tab->stopButton->isEnabled());
  finish();
  EXPECT_EQ(status(), "Complete: 3 succeeded, 0 failed, 0 skipped");
  EXPECT_THAT(panels.lastAlert(), StartsWith("Processing complete\n\nSuccess: 3\nFailed: 0\nSkipped: 0\n\nLog: "));
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::informational);
  EXPECT_EQ(tab->progress->value(), 3);
  EXPECT_TRUE(tab->startButton->isEnabled());
  EXPECT_FALSE(tab->stopButton->isEnabled());
  EXPECT_TRUE(fs::exists(results() / "p1.dng"));
  EXPECT_TRUE(waitUntil([&] { return !panels.opened.empty(); }));
  EXPECT_EQ(panels.opened, std::vector{results()});
  tab->openButton->click();
  EXPECT_EQ(panels.opened.size(), 2U);
}

TEST_F(BatchTab, SkipsWhatIsThereOrNumbersTheCopies) {
  makeTab();
  AppPreferences::shared().setOpenAfterCompletion(false);
  AppPreferences::shared().setSaveLog(false);
  tab->startBatch();
  finish();
  tab->startBatch();
  finish();
  EXPECT_EQ(status(), "Complete: 0 succeeded, 0 failed, 3 skipped");
  EXPECT_THAT(panels.lastAlert(), EndsWith("\n\nLog: No log generated"));
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::informational);
  AppPreferences::shared().setExistingOutputPolicy(ExistingOutputPolicy::numberedCopy);
  tab->startBatch();
  finish();
  EXPECT_TRUE(fs::exists(results() / "p3-2.dng"));
  EXPECT_TRUE(panels.opened.empty());
}

TEST_F(BatchTab, ShowsFailuresWithTheirFiles) {
  makeTab();
  std::ofstream(input / "a.dng") << "no DNG";
  tab->startBatch();
  finish();
  EXPECT_EQ(status(), "Complete: 3 succeeded, 1 failed, 0 skipped");
  EXPECT_THAT(panels.lastAlert(), HasSubstr("\n\nDetails:\na.dng: a.dng: "));
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::warning);
}

TEST_F(BatchTab, StopsAfterTheFilesInProgress) {
  makeTab(12);
  tab->workersPopUp->setCurrentIndex(1);
  Gate gate;
  tab->startBatch();
  tab->stopButton->click();
  EXPECT_FALSE(tab->stopButton->isEnabled());
  EXPECT_EQ(status(), "Stopping after the current file…");
  gate.open();
  finish();
  EXPECT_THAT(status(), EndsWith(" (Cancelled)"));
  EXPECT_THAT(panels.lastAlert(), StartsWith("Processing complete (Cancelled)\n\n"));
}

TEST_F(BatchTab, RefusesOneFolderForBoth) {
  makeTab();
  tab->setOutput(input / ".");
  tab->startBatch();
  EXPECT_FALSE(tab->isProcessing());
  EXPECT_EQ(panels.lastAlert(), "Input and output folders cannot be the same.");
}

TEST_F(BatchTab, WritesIntoTheChosenFolderUntilTheDefaultIsWanted) {
  makeTab();
  const TemporaryFolder chosen;
  panels.answer = chosen.path();
  tab->outputButton->click();
  EXPECT_EQ(panels.asked.back().title, "Choose Repaired Files Folder");
  ASSERT_TRUE(waitUntil([&] { return tab->outputURL() == chosen.path(); }));
  EXPECT_EQ(tab->outputLabel->stringValue(), chosen.path().native());
  tab->startBatch();
  finish();
  EXPECT_TRUE(fs::exists(chosen / "p1.dng"));
  tab->defaultOutputButton->click();
  EXPECT_EQ(tab->outputLabel->stringValue(), "Default: " + results().native());
  tab->startBatch();
  finish();
  EXPECT_TRUE(fs::exists(results() / "p1.dng"));
}

TEST_F(BatchTab, WritesIntoTheFolderOfTheSettings) {
  makeTab();
  const TemporaryFolder custom;
  OutputFolderAccess::save(custom.path());
  AppPreferences::shared().setUseCustomOutput(true);
  tab->preferencesChanged();
  EXPECT_EQ(tab->outputLabel->stringValue(), "Default: " + custom.path().native());
  tab->startBatch();
  finish();
  EXPECT_TRUE(fs::exists(custom / "p1.dng"));
}

TEST_F(BatchTab, RefusesToStartWithoutThePermissionForTheFolderOfTheSettings) {
  makeTab();
  AppPreferences::shared().setUseCustomOutput(true);
  tab->startBatch();
  EXPECT_FALSE(tab->isProcessing());
  EXPECT_EQ(panels.lastAlert(),
            "The saved output folder needs permission again. Choose it in Settings or choose an "
            "output folder for this batch.");
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::critical);
}

TEST_F(BatchTab, CannotOpenResultsThatAreNotThere) {
  makeTab();
  tab->openButton->click();
  EXPECT_EQ(panels.lastAlert(), "The output folder has not been created. Complete a batch repair first.");
  EXPECT_FALSE(tab->openButton->isEnabled());
}

TEST_F(BatchTab, SaysWhereResultsAreThatCannotBeOpened) {
  makeTab();
  panels.opensFolders = false;
  tab->startBatch();
  finish();
  tab->openButton->click();
  EXPECT_EQ(panels.lastAlert(), "Unable to open the output folder:\n" + results().native());
}

TEST_F(BatchTab, KeepsTheSelectedProfileByItsIdentifier) {
  makeTab();
  CameraProfile other = profileOf(photographs.path("p1.dng"), "Another body");
  ProfileStore::save(other);
  tab->preferencesChanged();
  EXPECT_EQ(tab->profilePopUp->count(), 2);
  EXPECT_EQ(tab->profilePopUp->currentText(), "Body");
  ProfileStore::remove(profile);
  QTest::keyClick(tab->reloadButton, Qt::Key_Space);
  EXPECT_EQ(tab->profilePopUp->currentText(), "Another body");
}

TEST_F(BatchTab, ChoosesTheProfileThatWasSavedAndSaysWhatIsNext) {
  addPhotographs(2);
  tab = std::make_unique<BatchViewController>(panels);
  const CameraProfile saved = profileOf(photographs.path("p1.dng"), "A new body");
  ProfileStore::save(saved);
  tab->chooseProfile(saved.id);
  EXPECT_EQ(tab->profilePopUp->currentText(), "A new body");
  EXPECT_EQ(status(), "Choose an input folder.");
  tab->setInput(input);
  tab->startBatch();
  finish();
  tab->chooseProfile(profile.id);
  EXPECT_EQ(tab->profilePopUp->currentText(), "Body");
  EXPECT_TRUE(waitUntil([&] { return status() == "Found 2 DNG files in the input folder."; }));
}

TEST_F(BatchTab, ChoosesAProfileThatWasSavedDuringABatchWhenItHasEnded) {
  makeTab(12);
  Gate gate;
  tab->startBatch();
  const CameraProfile saved = profileOf(photographs.path("p1.dng"), "A new body");
  ProfileStore::save(saved);
  tab->chooseProfile(saved.id);
  QCoreApplication::processEvents();
  EXPECT_EQ(tab->profilePopUp->currentText(), "Body");
  gate.open();
  finish();
  EXPECT_EQ(tab->profilePopUp->currentText(), "A new body");
  EXPECT_THAT(status(), HasSubstr("12"));
}

TEST_F(BatchTab, StartsItsBarAnewForAnotherFolder) {
  makeTab();
  tab->startBatch();
  finish();
  EXPECT_EQ(tab->progress->value(), tab->progress->maximum());
  const TemporaryFolder another;
  tab->setInput(another.path());
  EXPECT_EQ(tab->progress->value(), 0);
}

TEST_F(BatchTab, SaysBeforehandThatNoOutputFolderIsChosen) {
  makeTab();
  AppPreferences::shared().setUseCustomOutput(true);
  tab->preferencesChanged();
  EXPECT_EQ(tab->outputLabel->stringValue(), "No custom output folder selected");
  AppPreferences::shared().setUseCustomOutput(false);
  tab->preferencesChanged();
  EXPECT_EQ(tab->outputLabel->stringValue(), "Default: " + results().native());
}

TEST_F(BatchTab, LeavesEverythingAloneWhileABatchRuns) {
  makeTab();
  Gate gate;
  tab->startBatch();
  ProfileStore::remove(profile);
  tab->preferencesChanged();
  tab->setInput("/elsewhere");
  tab->startBatch();
  QCoreApplication::processEvents();
  EXPECT_EQ(tab->profilePopUp->currentText(), "Body");
  EXPECT_EQ(tab->inputURL(), input);
  gate.open();
  finish();
  EXPECT_EQ(panels.alerts.size(), 1U);
}

TEST_F(BatchTab, FollowsTheDefaultNumberOfFilesUnlessAnotherWasChosen) {
  makeTab();
  AppPreferences::shared().setWorkers(3);
  tab->preferencesChanged();
  EXPECT_EQ(tab->workersPopUp->currentIndex(), 3);
  tab->workersPopUp->setCurrentIndex(1);
  AppPreferences::shared().setWorkers(2);
  tab->preferencesChanged();
  EXPECT_EQ(tab->workersPopUp->currentIndex(), 1);
}

TEST_F(BatchTab, CanGoAwayInTheMiddleOfABatch) {
  makeTab(12);
  tab->startBatch();
  tab.reset();
  QCoreApplication::processEvents();
  EXPECT_TRUE(panels.alerts.empty());
}

}  // namespace
}  // namespace tessaly::tests
