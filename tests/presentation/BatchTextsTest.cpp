#include "localization/Localization.h"
#include "presentation/BatchTexts.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace tessaly {
namespace {

using tests::TemporaryFolder;

/// Shows every text in one language until it goes away.
class InLanguage {
 public:
  explicit InLanguage(AppLanguage language) { Localization::setLanguageOverride(language); }
  InLanguage(const InLanguage&) = delete;
  InLanguage& operator=(const InLanguage&) = delete;
  ~InLanguage() { Localization::setLanguageOverride(AppLanguage::english); }
};

BatchProgress snapshot(std::int64_t completed, const std::string& name) {
  BatchProgress progress;
  progress.total = 40;
  progress.completed = completed;
  progress.succeeded = completed - 1;
  progress.failed = 1;
  progress.currentFilename = name;
  return progress;
}

BatchSummary summaryOf(std::int64_t succeeded, std::int64_t failed, std::int64_t skipped) {
  BatchSummary summary;
  summary.total = succeeded + failed + skipped;
  summary.succeeded = succeeded;
  summary.failed = failed;
  summary.skipped = skipped;
  for (std::int64_t number = 1; number <= failed; ++number)
    summary.failures.push_back({"f" + std::to_string(number) + ".dng", "message " + std::to_string(number)});
  return summary;
}

TEST(BatchTexts, ShowProgressWithTwoSpacesBetweenTheGroups) {
  EXPECT_EQ(BatchTexts::progressLine(snapshot(12, "L1000123.DNG")),
            "12/40  Success 11  Failed 1  Skipped 0  L1000123.DNG");
  const InLanguage chinese(AppLanguage::chinese);
  EXPECT_EQ(BatchTexts::progressLine(snapshot(12, "L1000123.DNG")), "12/40  成功 11  失败 1  跳过 0  L1000123.DNG");
}

TEST(BatchTexts, NeverExpandAFileName) {
  EXPECT_EQ(BatchTexts::progressLine(snapshot(1, "%d%@%%.dng")), "1/40  Success 0  Failed 1  Skipped 0  %d%@%%.dng");
}

TEST(BatchTexts, EndTheStatusWithTheCounts) {
  EXPECT_EQ(BatchTexts::statusLine(summaryOf(38, 1, 2)), "Complete: 38 succeeded, 1 failed, 2 skipped");
}

TEST(BatchTexts, SayThatABatchWasCancelled) {
  BatchSummary summary = summaryOf(0, 0, 0);
  summary.cancelled = true;
  EXPECT_EQ(BatchTexts::statusLine(summary), "Complete: 0 succeeded, 0 failed, 0 skipped (Cancelled)");
  EXPECT_EQ(BatchTexts::alertText(summary),
            "Processing complete (Cancelled)\n\nSuccess: 0\nFailed: 0\nSkipped: 0\n\nLog: No log generated");
  const InLanguage french(AppLanguage::french);
  EXPECT_EQ(BatchTexts::statusLine(summary), "Terminé : 0 réussis, 0 échecs, 0 ignorés (Annulé)");
}

TEST(BatchTexts, NameTheLogInTheAlert) {
  BatchSummary summary = summaryOf(38, 0, 2);
  summary.logURL = "/out/Repair Log-2026-11-15T20-23-12Z.csv";
  EXPECT_EQ(BatchTexts::alertText(summary),
            "Processing complete\n\nSuccess: 38\nFailed: 0\nSkipped: 2\n\nLog: /out/Repair "
            "Log-2026-11-15T20-23-12Z.csv");
}

TEST(BatchTexts, ListTheFirstFiveFailures) {
  EXPECT_EQ(BatchTexts::alertText(summaryOf(0, 7, 0)),
            "Processing complete\n\nSuccess: 0\nFailed: 7\nSkipped: 0\n\nDetails:\nf1.dng: message 1\nf2.dng: message "
            "2\nf3.dng: message 3\nf4.dng: message 4\nf5.dng: message 5\n\nLog: No log generated");
}

TEST(BatchTexts, ListExactlyFiveFailuresAndASingleOne) {
  EXPECT_NE(BatchTexts::alertText(summaryOf(0, 5, 0)).find("\nf5.dng: message 5\n\nLog: "), std::string::npos);
  EXPECT_NE(BatchTexts::alertText(summaryOf(0, 1, 0)).find("\n\nDetails:\nf1.dng: message 1\n\nLog: "),
            std::string::npos);
}

TEST(BatchTexts, ShowAFailureOfTheWholeBatchAsItsMessageAloneInTheInterfacesLanguage) {
  BatchSummary summary;
  summary.failed = 1;
  summary.failures = {{"", "Input and output folders cannot be the same"}};
  EXPECT_EQ(BatchTexts::alertText(summary),
            "Processing complete\n\nSuccess: 0\nFailed: 1\nSkipped: 0\n\nDetails:\nInput and output folders cannot be "
            "the same\n\nLog: No log generated");
  const InLanguage chinese(AppLanguage::chinese);
  EXPECT_EQ(BatchTexts::alertText(summary),
            "处理完成\n\n成功: 0\n失败: 1\n跳过: 0\n\n详细信息:\n输入文件夹和输出文件夹不能相同\n\n日志: 未生成日志");
}

TEST(BatchTexts, ShowTheSystemsWordsOfAFailureOfTheWholeBatchUnchanged) {
  BatchSummary summary;
  summary.failed = 1;
  summary.failures = {{"", "Permission denied"}};
  const InLanguage french(AppLanguage::french);
  EXPECT_NE(BatchTexts::alertText(summary).find("\n\nDétails:\nPermission denied\n\n"), std::string::npos);
}

TEST(BatchTexts, SayWhyThereIsNoLog) {
  BatchSummary summary = summaryOf(1, 0, 0);
  summary.logError = "No space left on device %@";
  EXPECT_EQ(BatchTexts::alertText(summary),
            "Processing complete\n\nSuccess: 1\nFailed: 0\nSkipped: 0\n\nLog: No log generated\nLog writing failed: No "
            "space left on device %@");
}

TEST(BatchTexts, WarnWhenAFileFailedOrTheLogCouldNotBeWritten) {
  EXPECT_FALSE(BatchTexts::isWarning(summaryOf(3, 0, 1)));
  EXPECT_TRUE(BatchTexts::isWarning(summaryOf(3, 1, 0)));
  BatchSummary summary = summaryOf(3, 0, 0);
  summary.logError = "";
  EXPECT_TRUE(BatchTexts::isWarning(summary));
}

TEST(BatchTexts, OfferTheResultsWhenThereAreAnyAndTheirFolderExists) {
  const TemporaryFolder folder;
  EXPECT_TRUE(BatchTexts::canOpenResults(summaryOf(1, 5, 0), folder.path()));
  EXPECT_TRUE(BatchTexts::canOpenResults(summaryOf(0, 0, 1), folder.path()));
  EXPECT_FALSE(BatchTexts::canOpenResults(summaryOf(0, 1, 0), folder.path()));
  EXPECT_FALSE(BatchTexts::canOpenResults(summaryOf(1, 0, 0), folder / "missing"));
  tests::writeText(folder / "file", "");
  EXPECT_FALSE(BatchTexts::canOpenResults(summaryOf(1, 0, 0), folder / "file"));
}

TEST(BatchProgressDisplay, BeginsEmpty) {
  const BatchProgressDisplay display;
  EXPECT_EQ(display.status(), "Preparing…");
  EXPECT_EQ(display.barValue(), 0);
  EXPECT_EQ(display.barMaximum(), 1);
}

TEST(BatchProgressDisplay, ShowsTheLatestSnapshot) {
  BatchProgressDisplay display;
  EXPECT_TRUE(display.show(snapshot(3, "c.dng")));
  EXPECT_EQ(display.status(), "3/40  Success 2  Failed 1  Skipped 0  c.dng");
  EXPECT_EQ(display.barValue(), 3);
  EXPECT_EQ(display.barMaximum(), 40);
}

TEST(BatchProgressDisplay, NeverMovesBack) {
  BatchProgressDisplay display;
  display.show(snapshot(3, "c.dng"));
  EXPECT_FALSE(display.show(snapshot(2, "b.dng")));
  EXPECT_FALSE(display.show(snapshot(3, "x.dng")));
  EXPECT_EQ(display.status(), "3/40  Success 2  Failed 1  Skipped 0  c.dng");
  EXPECT_EQ(display.barValue(), 3);
}

TEST(BatchProgressDisplay, KeepsTheStatusOfAStopRequestWhileTheBarGoesOn) {
  BatchProgressDisplay display;
  display.show(snapshot(3, "c.dng"));
  display.stopRequested();
  EXPECT_TRUE(display.show(snapshot(4, "d.dng")));
  EXPECT_EQ(display.status(), "Stopping after the current file…");
  EXPECT_EQ(display.barValue(), 4);
}

TEST(BatchProgressDisplay, HasABarOfAtLeastOneStep) {
  BatchProgressDisplay display;
  BatchProgress progress;
  progress.completed = 1;
  display.show(progress);
  EXPECT_EQ(display.barMaximum(), 1);
}

}  // namespace
}  // namespace tessaly
