#include "batch/OutputFolderAccess.h"
#include "localization/Localization.h"
#include "preferences/AppPreferences.h"
#include "presentation/BatchStart.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

namespace tessaly {
namespace {

class BatchStartTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static const tests::TemporaryFolder home;
    setenv("TESSALY_HOME", home.path().c_str(), 1);
  }

  void SetUp() override { Localization::setLanguageOverride(AppLanguage::english); }

  void TearDown() override {
    Localization::setLanguageOverride(std::nullopt);
    AppPreferences::shared().reset();
  }

  tests::TemporaryFolder folder;
};

TEST_F(BatchStartTest, AsksForAProfileThenForAFolder) {
  EXPECT_EQ(BatchStart::missingChoice(false, false), "Create and save a camera profile first.");
  EXPECT_EQ(BatchStart::missingChoice(false, true), "Create and save a camera profile first.");
  EXPECT_EQ(BatchStart::missingChoice(true, false), "Choose an input folder.");
  EXPECT_EQ(BatchStart::missingChoice(true, true), std::nullopt);
}

TEST_F(BatchStartTest, WritesIntoTheChosenFolderFirst) {
  AppPreferences::shared().setUseCustomOutput(true);
  EXPECT_EQ(BatchStart::outputFolder("/chosen", "/photos"), "/chosen");
}

TEST_F(BatchStartTest, WritesIntoTheCustomFolderNext) {
  OutputFolderAccess::save(folder.path());
  EXPECT_EQ(BatchStart::outputFolder(std::nullopt, "/photos"), "/photos/Tessaly Results") << "it is switched off";
  AppPreferences::shared().setUseCustomOutput(true);
  EXPECT_EQ(BatchStart::outputFolder(std::nullopt, "/photos"), folder.path());
}

TEST_F(BatchStartTest, NeedsPermissionForACustomFolderThatWasNeverChosen) {
  AppPreferences::shared().setUseCustomOutput(true);
  EXPECT_THROW(static_cast<void>(BatchStart::outputFolder(std::nullopt, "/photos")), OutputFolderPermission);
}

TEST_F(BatchStartTest, WritesIntoTheInputFolderByDefault) {
  EXPECT_EQ(BatchStart::outputFolder(std::nullopt, "/photos"), "/photos/Tessaly Results");
}

TEST_F(BatchStartTest, RefusesOneFolderForBoth) {
  EXPECT_EQ(BatchStart::sameFolder("/a/b", "/a/b/../b/"), "Input and output folders cannot be the same.");
  EXPECT_EQ(BatchStart::sameFolder("/a/b", "/a/b/Tessaly Results"), std::nullopt);
}

TEST_F(BatchStartTest, TakesItsOptionsFromThePreferences) {
  AppPreferences::shared().setExistingOutputPolicy(ExistingOutputPolicy::numberedCopy);
  AppPreferences::shared().setSaveLog(false);
  EXPECT_EQ(BatchStart::options().existingOutputPolicy, ExistingOutputPolicy::numberedCopy);
  EXPECT_FALSE(BatchStart::options().saveLog);
}

TEST_F(BatchStartTest, TakesZeroWorkersForTheAutomaticNumber) {
  EXPECT_EQ(BatchStart::workers(0), AppPreferences::automaticWorkers());
  EXPECT_EQ(BatchStart::workers(3), 3);
}

}  // namespace
}  // namespace tessaly
