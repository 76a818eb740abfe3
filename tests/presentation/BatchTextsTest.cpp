#include "localization/Localization.h"
#include "presentation/BatchTexts.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <set>
#include <string>

namespace tessaly {
namespace {

class BatchTextsTest : public testing::Test {
 protected:
  void SetUp() override { speak(AppLanguage::english); }
  void TearDown() override { Localization::setLanguageOverride(std::nullopt); }

  static void speak(AppLanguage language) { Localization::setLanguageOverride(language); }

  static BatchSummary summaryWithFailures(int count) {
    BatchSummary summary;
    summary.total = summary.failed = count;
    for (int i = 1; i <= count; ++i)
      summary.failures.push_back({"L" + std::to_string(i) + ".DNG", "L" + std::to_string(i) + ".DNG: broken"});
    return summary;
  }
};

TEST_F(BatchTextsTest, SayHowFarABatchIsWithTwoBlanksBetweenTheGroups) {
  const BatchProgress progress{10, 3, 1, 2, 0, "L1000123.DNG"};
  EXPECT_EQ(BatchTexts::progressLine(progress), "3/10  Success 1  Failed 2  Skipped 0  L1000123.DNG");
  speak(AppLanguage::chinese);
  EXPECT_EQ(BatchTexts::progressLine(progress), "3/10  成功 1  失败 2  跳过 0  L1000123.DNG");
  speak(AppLanguage::french);
  EXPECT_EQ(BatchTexts::progressLine(progress), "3/10  Réussis 1  Échecs 2  Ignorés 0  L1000123.DNG");
}

TEST_F(BatchTextsTest, TakeAFileNameAsItIs) {
  EXPECT_EQ(BatchTexts::progressLine({1, 1, 1, 0, 0, "100%d %@.dng"}),
            "1/1  Success 1  Failed 0  Skipped 0  100%d %@.dng");
}

TEST_F(BatchTextsTest, SayHowABatchEnded) {
  BatchSummary summary;
  summary.succeeded = 8;
  summary.failed = 1;
  summary.skipped = 2;
  EXPECT_EQ(BatchTexts::statusLine(summary), "Complete: 8 succeeded, 1 failed, 2 skipped");
  summary.cancelled = true;
  EXPECT_EQ(BatchTexts::statusLine(summary), "Complete: 8 succeeded, 1 failed, 2 skipped (Cancelled)");
  speak(AppLanguage::french);
  EXPECT_EQ(BatchTexts::statusLine(summary), "Terminé : 8 réussis, 1 échecs, 2 ignorés (Annulé)");
  speak(AppLanguage::chinese);
  EXPECT_EQ(BatchTexts::statusLine(summary), "完成：成功 8，失败 1，跳过 2 (已取消)");
}

TEST_F(BatchTextsTest, NameTheFolderThatTheSystemRefused) {
  const BatchFailure listing{"", "No such file or directory", BatchObstacle{ENOENT, "/photos/June", false}};
  EXPECT_EQ(BatchTexts::message(listing), "No such file or directory");
  EXPECT_EQ(BatchTexts::description(listing), "June: No such file or directory");
  const BatchFailure making{"", "Not a directory", BatchObstacle{ENOTDIR, "/photos/out", true}};
  EXPECT_EQ(BatchTexts::description(making), "out: Not a directory");
  speak(AppLanguage::french);
  EXPECT_EQ(BatchTexts::description(listing), "June: Fichier ou dossier introuvable");
}

TEST_F(BatchTextsTest, SayWhyTheFolderForTheCopiesCannotBeWritten) {
  const BatchFailure failure{"", "Permission denied", BatchObstacle{EACCES, "/photos/out", true}};
  const std::string told =
      "Tessaly couldn't write to the folder “/photos/out”: permission denied. Choose a folder that you may write to, "
      "then retry.";
  EXPECT_EQ(BatchTexts::message(failure), told);
  EXPECT_EQ(BatchTexts::description(failure), told);
  BatchSummary summary;
  summary.failed = 2;
  summary.failures = {failure, failure};
  EXPECT_EQ(BatchTexts::statusLine(summary), "Complete: 0 succeeded, 2 failed, 0 skipped  " + told);
}

TEST_F(BatchTextsTest, NameFilesThatTheCountsDoNotTellOf) {
  BatchSummary summary;
  summary.total = summary.succeeded = 2;
  summary.unexamined = {{"a.dng", "Input/output error"}};
  EXPECT_TRUE(BatchTexts::isWarning(summary));
  EXPECT_EQ(BatchTexts::statusLine(summary), "Complete: 2 succeeded, 0 failed, 0 skipped  Left out: a.dng");
  EXPECT_THAT(BatchTexts::alertText(summary),
              testing::HasSubstr("\n\nDetails:\nTessaly couldn't look at “a.dng” and left it out: Input/output error"));
  summary.unexamined.clear();
  summary.unaccounted = {{"b.dng", "x"}, {"c", ""}, {"d", ""}, {"e", ""}, {"f", ""}, {"g", ""}};
  EXPECT_TRUE(BatchTexts::isWarning(summary));
  EXPECT_EQ(BatchTexts::statusLine(summary),
            "Complete: 2 succeeded, 0 failed, 0 skipped  Unaccounted for: b.dng, c, d, e, f, …");
  EXPECT_THAT(BatchTexts::alertText(summary), testing::HasSubstr("Tessaly can't tell what became of “b.dng”."));
}

TEST_F(BatchTextsTest, NameALeftFileAndWhyItStays) {
  EXPECT_EQ(BatchTexts::leftFile({"/out/.X.partial", LeftFile::Reason::inUse}),
            "Unfinished copy left in place: /out/.X.partial (another program is using it)");
  speak(AppLanguage::french);
  EXPECT_EQ(BatchTexts::leftFile({"/out/.X.partial", LeftFile::Reason::recent}),
            "Copie inachevée laissée en place\u00A0: /out/.X.partial (elle a changé au cours des dernières 24 heures)");
}

TEST_F(BatchTextsTest, KnowEveryReasonForLeavingAFileInEveryLanguage) {
  using Reason = LeftFile::Reason;
  for (const Reason reason : {Reason::notRegular, Reason::otherUser, Reason::recent, Reason::inUse, Reason::refused}) {
    std::set<std::string> texts;
    for (const AppLanguage language : {AppLanguage::english, AppLanguage::chinese, AppLanguage::french}) {
      speak(language);
      const std::string text = BatchTexts::leftFile({"x", reason});
      texts.insert(text.substr(text.find('(') + 1));
    }
    EXPECT_EQ(texts.size(), 3U) << *texts.begin();
  }
}

TEST_F(BatchTextsTest, SayHowManyFilesAStoppedBatchLeaves) {
  BatchSummary summary;
  summary.total = 10;
  summary.succeeded = 6;
  summary.failed = 1;
  summary.skipped = 1;
  EXPECT_EQ(BatchTexts::filesLeft(summary), "") << "it was not stopped";
  summary.cancelled = true;
  EXPECT_EQ(BatchTexts::filesLeft(summary), "2 files are left.");
  summary.succeeded = 7;
  EXPECT_EQ(BatchTexts::filesLeft(summary), "One file is left.");
  summary.succeeded = 8;
  EXPECT_EQ(BatchTexts::filesLeft(summary), "");
}

TEST_F(BatchTextsTest, SayWhichNumberOfWorkersIsUsed) {
  EXPECT_EQ(BatchTexts::usedWorkers(9), "4 workers are used instead of 9.");
  EXPECT_EQ(BatchTexts::usedWorkers(-1), "One worker is used instead of -1.");
  for (const std::int64_t asked : {0, 1, 4})
    EXPECT_EQ(BatchTexts::usedWorkers(asked), "");
}

TEST_F(BatchTextsTest, AlertOfASuccessNamesTheLog) {
  BatchSummary summary;
  summary.total = summary.succeeded = 2;
  summary.logURL = "/out/Repair Log-2026-11-15T20-23-12Z.csv";
  EXPECT_EQ(BatchTexts::alertText(summary),
            "Processing complete\n\nSuccess: 2\nFailed: 0\nSkipped: 0\n\n"
            "Log: /out/Repair Log-2026-11-15T20-23-12Z.csv");
  EXPECT_FALSE(BatchTexts::isWarning(summary));
}

TEST_F(BatchTextsTest, AlertWithoutALogSaysSo) {
  BatchSummary summary;
  summary.total = summary.skipped = 1;
  EXPECT_EQ(BatchTexts::alertText(summary),
            "Processing complete\n\nSuccess: 0\nFailed: 0\nSkipped: 1\n\nLog: No log generated");
  EXPECT_FALSE(BatchTexts::isWarning(summary));
}

TEST_F(BatchTextsTest, AlertTellsWhyTheLogCouldNotBeWritten) {
  BatchSummary summary;
  summary.total = summary.succeeded = 1;
  summary.logError = "No space left on device";
  EXPECT_EQ(BatchTexts::alertText(summary),
            "Processing complete\n\nSuccess: 1\nFailed: 0\nSkipped: 0\n\nLog: No log generated\n"
            "Log writing failed: No space left on device");
  EXPECT_TRUE(BatchTexts::isWarning(summary));
}

TEST_F(BatchTextsTest, AlertListsTheFirstFiveFailuresInTheirOrder) {
  EXPECT_EQ(BatchTexts::alertText(summaryWithFailures(7)),
            "Processing complete\n\nSuccess: 0\nFailed: 7\nSkipped: 0\n\nDetails:\n"
            "L1.DNG: L1.DNG: broken\nL2.DNG: L2.DNG: broken\nL3.DNG: L3.DNG: broken\nL4.DNG: L4.DNG: broken\n"
            "L5.DNG: L5.DNG: broken\n\nLog: No log generated");
  EXPECT_TRUE(BatchTexts::isWarning(summaryWithFailures(1)));
}

TEST_F(BatchTextsTest, AlertOfAFailedBatchShowsItsMessageAloneInTheInterfacesLanguage) {
  BatchSummary summary;
  summary.failed = 1;
  summary.failures = {{"", "Input and output folders cannot be the same"}};
  EXPECT_EQ(BatchTexts::alertText(summary),
            "Processing complete\n\nSuccess: 0\nFailed: 1\nSkipped: 0\n\nDetails:\n"
            "Input and output folders cannot be the same\n\nLog: No log generated");
  speak(AppLanguage::french);
  EXPECT_EQ(BatchTexts::alertText(summary),
            "Traitement terminé\n\nRéussis: 0\nÉchecs: 1\nIgnorés: 0\n\nDétails:\n"
            "Les dossiers d’entrée et de sortie ne peuvent pas être identiques\n\nJournal: Aucun journal généré");
}

TEST_F(BatchTextsTest, AlertOfAStoppedBatchSaysSoInChinese) {
  speak(AppLanguage::chinese);
  BatchSummary summary = summaryWithFailures(1);
  summary.cancelled = true;
  summary.logURL = "/出/日志.csv";
  EXPECT_EQ(
      BatchTexts::alertText(summary),
      "处理完成 (已取消)\n\n成功: 0\n失败: 1\n跳过: 0\n\n详细信息:\nL1.DNG: L1.DNG: broken\n\n日志: /出/日志.csv");
}

TEST_F(BatchTextsTest, OfferResultsThatExist) {
  const tests::TemporaryFolder folder;
  BatchSummary summary;
  summary.total = summary.failed = 1;
  EXPECT_FALSE(BatchTexts::canOpenResults(summary, folder.path()));
  summary.skipped = 1;
  EXPECT_TRUE(BatchTexts::canOpenResults(summary, folder.path()));
  EXPECT_FALSE(BatchTexts::canOpenResults(summary, folder / "missing"));
}

TEST_F(BatchTextsTest, CountTheFilesOfAFolder) {
  EXPECT_EQ(BatchTexts::foundFiles(3), "Found 3 DNG files in the input folder.");
  EXPECT_EQ(BatchTexts::foundFiles(0),
            "No DNG files found. Select the folder that directly contains the source DNG files.");
}

TEST_F(BatchTextsTest, NameTheDefaultOutputFolder) {
  EXPECT_EQ(BatchTexts::defaultOutput("/photos/%d"), "Default: /photos/%d/Tessaly Results");
  EXPECT_EQ(BatchTexts::defaultOutput({}), "Created inside the input folder if not selected");
}

TEST_F(BatchTextsTest, ShowANameThatIsNotUTF8WithReplacementCharacters) {
  EXPECT_EQ(BatchTexts::defaultOutput("/a\xff"), "Default: /a\xEF\xBF\xBD/Tessaly Results");
  EXPECT_EQ(BatchTexts::cannotOpen("/a\xff"), "Unable to open the output folder:\n/a\xEF\xBF\xBD");
}

TEST_F(BatchTextsTest, HoldNothingThatALabelWouldObeyWhenTheyAreMadeVisible) {
  BatchSummary summary;
  summary.failed = 1;
  summary.failures = {{"a\nb", "a\nb: words", BatchObstacle{ENOSPC, "/out\x1B", true}}};
  summary.unexamined = {{"c\a", "Permission denied"}};
  summary.unaccounted = {{"d\u202E", "Cannot allocate memory"}};
  summary.leftFiles = {{"/e\r", LeftFile::Reason::recent}};
  summary.logURL = "/f\t.csv";
  const BatchSummary visible = BatchTexts::visible(summary);
  EXPECT_EQ(visible.failures.front(), (BatchFailure{"a␊b", "a␊b: words", BatchObstacle{ENOSPC, "/out␛", true}}));
  EXPECT_EQ(visible.unexamined.front().filename, "c␇");
  EXPECT_EQ(visible.unaccounted.front().filename, "d<U+202E>");
  EXPECT_EQ(visible.leftFiles.front().file, "/e␍");
  EXPECT_EQ(visible.logURL, "/f␉.csv");
}

}  // namespace
}  // namespace tessaly
