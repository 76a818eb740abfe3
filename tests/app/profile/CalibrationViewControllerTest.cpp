#include "app/profile/CalibrationViewController.h"
#include "app/support/CalibrationTab.h"
#include "app/widgets/LocalizeView.h"
#include "presentation/CalibrationTexts.h"
#include "profile/CameraProfileJSON.h"

#include <gmock/gmock.h>

#include <fstream>

namespace tessaly::tests {
namespace {

using Kind = CalibrationCandidate::Kind;
using testing::HasSubstr;
using testing::StartsWith;

// ---- Choosing and analysing

TEST_F(CalibrationTab, SaysWhatToDoBeforeAnythingWasChosen) {
  EXPECT_EQ(tab.folderLabel->stringValue(), "No calibration folder selected");
  EXPECT_EQ(status(), "Choose a calibration folder, then click Find Sensor Defects.");
  EXPECT_EQ(tab.confidenceThreshold->text(), "98");
  tab.analyzeButton->click();
  EXPECT_EQ(panels.lastAlert(), "Choose a calibration folder, then click Find Sensor Defects.");
  EXPECT_FALSE(tab.isBusy());
}

TEST_F(CalibrationTab, TakesAFolderFromThePanel) {
  panels.answer = folder();
  button("Calibration Folder…").click();
  ASSERT_TRUE(waitUntil([&] { return tab.folderURL().has_value(); }));
  EXPECT_EQ(panels.asked.back().title, "Choose a Folder Containing Calibration DNG Files");
  EXPECT_EQ(tab.folderLabel->stringValue(), folder().filename());
  EXPECT_EQ(tab.folderLabel->toolTip().toStdString(), folder());
  EXPECT_EQ(status(), "Ready to analyze. Source files are read-only and will not be modified.");
}

TEST_F(CalibrationTab, KeepsTheFolderWhenThePanelIsCancelled) {
  tab.setFolder("/first");
  tab.chooseFolder();
  QCoreApplication::processEvents();
  EXPECT_EQ(tab.folderURL(), "/first");
}

TEST_F(CalibrationTab, ForgetsTheResultOfOneFolderWhenAnotherIsChosen) {
  analyze();
  EXPECT_EQ(camera(), CalibrationTexts::camera(tab.result()->metadata));
  EXPECT_EQ(camera(), "Tessaly Test Camera, S1");
  click(on(pixelX, pixelY));
  type(*tab.spotRadius, "5");
  click(on(230, 90));
  const TemporaryFolder another;
  tab.setFolder(another.path());
  EXPECT_FALSE(tab.result().has_value());
  EXPECT_TRUE(tab.candidates().empty());
  EXPECT_EQ(tab.table->model()->rowCount(), 0);
  EXPECT_FALSE(tab.previewView->hasPreview());
  EXPECT_EQ(tab.previewView->manualGuideX(), std::nullopt);
  for (const QLineEdit* field : {tab.manualX, tab.manualY, tab.spotRadius})
    EXPECT_EQ(field->text(), "");
  EXPECT_EQ(tab.progress->value(), 0);
  EXPECT_EQ(camera(), "");
  type(*tab.profileName, "Camera B");
  button("Save Camera Profile").click();
  EXPECT_EQ(panels.lastAlert(), "Run defect detection first.");
  EXPECT_TRUE(ProfileStore::loadAll().empty());
  tab.previewView->grab();
  speak(AppLanguage::french);
  localizeView(tab);
}

TEST_F(CalibrationTab, RefusesAFolderWithFewerThanThreeFiles) {
  const TemporaryFolder few;
  for (const char* name : {"one.dng", "two.DNG", ".hidden.dng", "three.txt"})
    std::ofstream(few / name) << "x";
  tab.setFolder(few.path());
  tab.analyzeButton->click();
  ASSERT_TRUE(waitUntil([&] { return !panels.alerts.empty(); }));
  EXPECT_EQ(panels.lastAlert(), "The folder contains fewer than three DNG files");
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::informational);
  EXPECT_EQ(status(), "Ready to analyze. Source files are read-only and will not be modified.");
  EXPECT_TRUE(tab.analyzeButton->isEnabled());
}

TEST_F(CalibrationTab, ShowsAFailureOfTheAnalysisWithTheNameOfItsFile) {
  std::ofstream(frames.path("broken.dng")) << "no DNG at all";
  tab.setFolder(folder());
  tab.analyzeButton->click();
  EXPECT_FALSE(tab.analyzeButton->isEnabled());
  ASSERT_TRUE(waitUntil([&] { return !tab.isBusy(); }));
  EXPECT_THAT(panels.lastAlert(), StartsWith("broken.dng: "));
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::critical);
  EXPECT_TRUE(tab.analyzeButton->isEnabled());
  EXPECT_FALSE(tab.result().has_value());
}

TEST_F(CalibrationTab, TellsOfAFolderThatHasVanished) {
  tab.setFolder("/no/such/folder");
  tab.analyze();
  ASSERT_TRUE(waitUntil([&] { return !tab.isBusy(); }));
  EXPECT_THAT(panels.lastAlert(), StartsWith("folder: "));
}

TEST_F(CalibrationTab, FindsTheDefectsAndPreselectsTheStrongOnes) {
  tab.setFolder(folder());
  tab.analyzeButton->click();
  EXPECT_EQ(status(), "Reading calibration frames…");
  ASSERT_TRUE(waitUntil([&] { return !tab.isBusy(); }));
  EXPECT_THAT(status(), StartsWith("Complete: 6 bright-field, 0 dark, "));
  EXPECT_THAT(status(), HasSubstr(". Review at high zoom before saving."));
  EXPECT_EQ(tab.progress->value(), tab.progress->maximum());
  EXPECT_TRUE(isAccepted(rowOf(Kind::line)));
  EXPECT_EQ(tab.candidates()[static_cast<std::size_t>(rowOf(Kind::line))].x, columnX + 4);
  EXPECT_TRUE(tab.previewView->hasPreview());
}

TEST_F(CalibrationTab, RunsOneAnalysisAtATime) {
  tab.setFolder(folder());
  tab.analyze();
  tab.analyze();
  tab.setFolder("/other");
  EXPECT_EQ(tab.folderURL(), folder());
  ASSERT_TRUE(waitUntil([&] { return !tab.isBusy(); }));
  EXPECT_TRUE(tab.result().has_value());
}

TEST_F(AppTest, ATabCanGoAwayInTheMiddleOfAnAnalysis) {
  FrameFolder frames(320, 160);
  frames.addSeries("a", 12, FrameFolder::brightLevel, {100, std::pair{1, 125}});
  auto tab = std::make_unique<CalibrationViewController>(panels);
  tab->setFolder(frames.path("a-1.dng").parent_path());
  tab->analyze();
  tab.reset();
  QCoreApplication::processEvents();
  EXPECT_TRUE(panels.alerts.empty());
}

// ---- Reviewing

TEST_F(CalibrationTab, ReadsTheThresholdWithPercentSignsAndSpaces) {
  analyze();
  for (const char* text : {"95%", " 95 "}) {
    type(*tab.confidenceThreshold, text);
    button("Select Matching Pixels").click();
    EXPECT_EQ(status(), "Included pixels with confidence ≥ 95%. Columns and fixed spots still require manual review.");
  }
  EXPECT_TRUE(panels.alerts.empty());
}

TEST_F(CalibrationTab, RefusesAThresholdThatIsNone) {
  analyze();
  std::size_t said = 0;
  for (const char* text : {"49", "49.99", "100.01", "101", "abc", "", "nan"}) {
    type(*tab.confidenceThreshold, text);
    QTest::keyClick(tab.confidenceThreshold, Qt::Key_Return);
    EXPECT_EQ(panels.alerts.size(), ++said) << text;
    EXPECT_EQ(panels.lastAlert(), "Enter a pixel-confidence value from 50 to 100, such as 95 or 98.");
  }
}

TEST_F(CalibrationTab, IncludesMatchingPixelsAndLeavesTheOthersAsTheyAre) {
  analyze();
  button("Deselect All").click();
  EXPECT_TRUE(tab.accepted().empty());
  type(*tab.confidenceThreshold, "50");
  QTest::keyClick(tab.confidenceThreshold, Qt::Key_Return);
  for (std::size_t row = 0; row < tab.candidates().size(); ++row)
    EXPECT_EQ(isAccepted(static_cast<int>(row)), tab.candidates()[row].kind == Kind::pixel);
  button("Select All").click();
  EXPECT_EQ(tab.accepted().size(), tab.candidates().size());
}

TEST_F(CalibrationTab, AllMeansAllWhateverTheFilterShows) {
  analyze();
  button("Deselect All").click();
  for (QComboBox* popUp : tab.findChildren<QComboBox*>())
    if (popUp->itemText(0) == "All Kinds") popUp->setCurrentText("Column");
  EXPECT_EQ(tab.table->model()->rowCount(), 1);
  button("Select All").click();
  EXPECT_EQ(tab.accepted().size(), tab.candidates().size());
}

TEST_F(CalibrationTab, TogglesBySpaceInTheTable) {
  analyze();
  const int row = rowOf(Kind::line);
  tab.table->selectCandidate(row);
  const bool before = isAccepted(row);
  QTest::keyClick(tab.table, Qt::Key_Space);
  EXPECT_NE(isAccepted(row), before);
  QTest::keyClick(tab.previewView, Qt::Key_Space);
  EXPECT_EQ(isAccepted(row), before);
}

TEST_F(CalibrationTab, TogglesSeveralSelectedRowsToTheSameState) {
  analyze();
  button("Deselect All").click();
  tab.table->selectAll();
  QTest::keyClick(tab.table, Qt::Key_Space);
  EXPECT_EQ(tab.accepted().size(), tab.candidates().size());
  QTest::keyClick(tab.table, Qt::Key_Space);
  EXPECT_TRUE(tab.accepted().empty());
}

TEST_F(CalibrationTab, CentresACandidateByReturn) {
  analyze();
  tab.table->selectCandidate(rowOf(Kind::pixel));
  QTest::keyClick(tab.table, Qt::Key_Return);
  EXPECT_DOUBLE_EQ(tab.previewView->navigation().zoom(), 4);
}

// ---- Clicking in the preview

TEST_F(CalibrationTab, FillsThePixelFieldsByAClickOnItsMarker) {
  analyze();
  click(on(pixelX, pixelY));
  EXPECT_EQ(tab.manualX->text().toInt(), pixelX);
  EXPECT_EQ(tab.manualY->text().toInt(), pixelY);
  EXPECT_EQ(status(), "Pixel coordinates filled. Confirm them, then click Add Pixel.");
  EXPECT_EQ(tab.table->currentCandidate(), rowOf(Kind::pixel));
}

TEST_F(CalibrationTab, FillsTheColumnFieldByAClickOnItsMarker) {
  analyze();
  click(on(pixelX, pixelY));
  click(on(columnX, 100));
  EXPECT_EQ(tab.manualX->text().toInt(), columnX);
  EXPECT_EQ(tab.manualY->text(), "");
  EXPECT_EQ(status(), "Column X coordinate filled. Confirm it, then click Add Full Column.");
}

TEST_F(CalibrationTab, SetsTheGuideByAClickOnTheEmptyImage) {
  analyze();
  const std::string complete = status();
  const QPoint place = on(230, 90);
  click(place);
  const auto guide = tab.previewView->manualGuideX();
  ASSERT_TRUE(guide.has_value());
  EXPECT_EQ(tab.manualX->text().toStdString(), std::to_string(*guide));
  EXPECT_NEAR(static_cast<double>(*guide), 230, 1);
  EXPECT_EQ(status(), "Active-area coordinate x=" + std::to_string(*guide) +
                          ". If the cyan guide matches the defect, click Add Full Column.");
  QTest::keyClick(tab.previewView, Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(tab.previewView->manualGuideX(), *guide + 1);
  EXPECT_EQ(tab.manualX->text().toStdString(), std::to_string(*guide + 1));
  QTest::keyClick(tab.previewView, Qt::Key_Escape);
  EXPECT_EQ(tab.previewView->manualGuideX(), std::nullopt);
  EXPECT_EQ(status(), complete);
}

TEST_F(CalibrationTab, TogglesByADoubleClickOnAMarker) {
  analyze();
  const int row = rowOf(Kind::pixel);
  const bool before = isAccepted(row);
  QTest::mouseDClick(tab.previewView->viewport(), Qt::LeftButton, Qt::NoModifier, on(pixelX, pixelY));
  EXPECT_NE(isAccepted(row), before);
}

TEST_F(CalibrationTab, StepsThroughTheCandidatesByNAndP) {
  analyze();
  tab.table->selectCandidate(0);
  QTest::keyClick(tab.previewView, Qt::Key_N);
  EXPECT_EQ(tab.table->currentIndex().row(), 1);
  QTest::keyClick(tab.previewView, Qt::Key_P);
  EXPECT_EQ(tab.table->currentIndex().row(), 0);
}

// ---- Inspecting a photograph

TEST_F(CalibrationTab, RefusesToInspectWithoutAResult) {
  button("Inspect a DNG…").click();
  EXPECT_EQ(panels.lastAlert(), "Run defect detection on the calibration frames before loading a problem DNG.");
  EXPECT_TRUE(panels.asked.empty());
}

TEST_F(CalibrationTab, ShowsAPhotographAndTheBrightFieldAgain) {
  analyze();
  const std::string complete = status();
  panels.answer = frames.path("a-1.dng");
  button("Inspect a DNG…").click();
  EXPECT_EQ(panels.asked.back().title, "Choose a Source DNG That Shows the Defective Column");
  ASSERT_TRUE(waitUntil([&] { return status() != complete && !tab.isBusy(); }));
  EXPECT_EQ(status(), "a-1.dng. Zoom in, click the vertical defect, then click Add Full Column.");
  EXPECT_TRUE(button("Show Bright-Field Preview").isVisibleTo(&tab));
  button("Show Bright-Field Preview").click();
  EXPECT_EQ(status(), complete);
  EXPECT_FALSE(button("Show Bright-Field Preview").isVisibleTo(&tab));
}

TEST_F(CalibrationTab, RefusesAPhotographOfAnotherCamera) {
  analyze();
  const std::string complete = status();
  FrameFolder other(300, 220);
  other.add("other.dng", FrameFolder::brightLevel, {100, std::pair{1, 125}});
  tab.inspect(other.path("other.dng"));
  EXPECT_EQ(status(), "Generating an enhanced defective-column preview…");
  ASSERT_TRUE(waitUntil([&] { return !tab.isBusy(); }));
  EXPECT_EQ(panels.lastAlert(), "The problem DNG does not match the calibration camera or sensor dimensions");
  EXPECT_EQ(status(), complete);
}

TEST_F(CalibrationTab, NamesAPhotographThatCannotBeRead) {
  analyze();
  tab.inspect("/no/such/photo.dng");
  ASSERT_TRUE(waitUntil([&] { return !tab.isBusy(); }));
  EXPECT_THAT(panels.lastAlert(), StartsWith("photo.dng: Tessaly couldn't open this file."));
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::critical);
}

// ---- Saving

TEST_F(CalibrationTab, RefusesToSaveWithoutANameOrACandidate) {
  analyze();
  type(*tab.profileName, "   ");
  button("Save Camera Profile").click();
  EXPECT_EQ(panels.lastAlert(), "Enter a camera profile name.");
  type(*tab.profileName, "Body");
  button("Deselect All").click();
  button("Save Camera Profile").click();
  EXPECT_EQ(panels.lastAlert(), "Include at least one confirmed defective pixel, column, or fixed spot.");
  EXPECT_TRUE(ProfileStore::loadAll().empty());
}

TEST_F(CalibrationTab, SavesTheIncludedCandidatesAndSaysWhere) {
  analyze();
  int saved = 0;
  QObject::connect(&tab, &CalibrationViewController::profileSaved, [&] { ++saved; });
  button("Select All").click();
  type(*tab.profileName, "  My & <b>body</b> ");
  QTest::keyClick(tab.profileName, Qt::Key_Return);
  const std::vector<CameraProfile> profiles = ProfileStore::loadAll();
  ASSERT_EQ(profiles.size(), 1U);
  EXPECT_EQ(profiles[0].name, "My & <b>body</b>");
  EXPECT_EQ(profiles[0].pixels.size() + profiles[0].lines.size() + profiles[0].spots->size(), tab.candidates().size());
  EXPECT_EQ(saved, 1);
  EXPECT_THAT(panels.lastAlert(), StartsWith("Saved “My & <b>body</b>”: "));
  EXPECT_THAT(panels.lastAlert(),
              HasSubstr(" columns, and 0 fixed spots.\n\n" + ProfileStore::fileOf(profiles[0]).native()));
}

TEST_F(CalibrationTab, SavesTheSameUnderTheSameNameOnce) {
  analyze();
  std::vector<UUID> saved;
  QObject::connect(&tab, &CalibrationViewController::profileSaved, [&](const UUID& id) { saved.push_back(id); });
  button("Select All").click();
  type(*tab.profileName, "Body");
  for (int press = 0; press < 3; ++press)
    QTest::keyClick(tab.profileName, Qt::Key_Return);
  ASSERT_EQ(ProfileStore::loadAll().size(), 1U);
  EXPECT_EQ(panels.alerts.size(), 1U);
  EXPECT_EQ(status(), "This selection is saved already as “Body”.");
  EXPECT_EQ(saved, std::vector<UUID>(3, ProfileStore::loadAll()[0].id));
  tab.table->selectCandidate(0);
  QTest::keyClick(tab.table, Qt::Key_Space);
  button("Save Camera Profile").click();
  EXPECT_EQ(ProfileStore::loadAll().size(), 2U);
  type(*tab.profileName, "Another body");
  button("Save Camera Profile").click();
  EXPECT_EQ(ProfileStore::loadAll().size(), 3U);
}

TEST_F(CalibrationTab, ShowsAStoreThatCannotSave) {
  analyze();
  button("Select All").click();
  std::filesystem::create_directories(ProfileStore::directory().parent_path());
  std::ofstream(ProfileStore::directory()) << "a file where the folder belongs";
  type(*tab.profileName, "Body");
  button("Save Camera Profile").click();
  EXPECT_EQ(panels.alerts.back().style, Alert::Style::critical);
  EXPECT_NE(panels.lastAlert(), "");
}

}  // namespace
}  // namespace tessaly::tests
