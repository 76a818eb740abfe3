#include "localization/Localization.h"
#include "presentation/AlertPage.h"
#include "presentation/BatchTexts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaly {
namespace {

using testing::HasSubstr;
using testing::Not;

class BatchEndPage : public testing::Test {
 protected:
  void SetUp() override { Localization::setLanguageOverride(AppLanguage::english); }
  void TearDown() override { Localization::setLanguageOverride(std::nullopt); }

  static BatchFailure failure(const std::string& name, RejectionReason reason) {
    return {name, Localization::rejectionMessage(reason, name)};
  }

  static std::size_t count(const std::string& text, const std::string& part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
      ++found;
    return found;
  }
};

TEST_F(BatchEndPage, BeginsWithTheDocumentedLineAndTheCounts) {
  BatchSummary summary;
  summary.succeeded = 3;
  summary.failed = 1;
  summary.skipped = 2;
  EXPECT_EQ(batchEndPage(summary).first, "Processing complete");
  EXPECT_EQ(batchEndPage(summary).emphasis, "3 succeeded, 1 failed, 2 skipped");
  summary.cancelled = true;
  EXPECT_EQ(batchEndPage(summary).first, "Processing complete (Cancelled)");
}

TEST_F(BatchEndPage, SaysHowManyFilesAStoppedBatchLeaves) {
  BatchSummary summary;
  summary.total = 5;
  summary.succeeded = 3;
  summary.cancelled = true;
  EXPECT_EQ(batchEndPage(summary).emphasis, "3 succeeded, 0 failed, 0 skipped\n2 files are left.");
}

TEST_F(BatchEndPage, TellsWhatWasLeftOutToo) {
  BatchSummary summary;
  summary.failures = {failure("a.dng", RejectionReason::damaged)};
  summary.unexamined = {{"b.dng", "Input/output error"}};
  summary.unaccounted = {{"c.dng", ""}};
  const std::string details = batchEndPage(summary).details;
  EXPECT_THAT(details, HasSubstr("\n\n" + BatchTexts::unexamined(summary.unexamined[0]) + "\n\n"));
  EXPECT_THAT(details, testing::EndsWith(BatchTexts::unaccounted(summary.unaccounted[0])));
}

TEST_F(BatchEndPage, OfASuccessHasTheLogAndNothingElse) {
  BatchSummary summary;
  summary.logURL = "/out/Repair Log.csv";
  EXPECT_EQ(batchEndPage(summary).details, "");
  EXPECT_EQ(batchEndPage(summary).note, "");
  EXPECT_EQ(batchEndPage(summary).last, "Log: /out/Repair Log.csv");
}

TEST_F(BatchEndPage, NamesAFileOnceAndWhereToAskOnce) {
  BatchSummary summary;
  summary.failures = {failure("a.dng", RejectionReason::damaged), failure("b.dng", RejectionReason::jpegXL)};
  const AlertPage page = batchEndPage(summary);
  EXPECT_EQ(count(page.details, "a.dng"), 1U);
  EXPECT_EQ(count(page.details, "b.dng"), 1U);
  EXPECT_EQ(count(page.details, std::string(Localization::supportEmail)), 0U);
  EXPECT_EQ(page.note, Localization::helpLine(AppLanguage::english));
  EXPECT_THAT(page.details, HasSubstr("a.dng: This DNG appears incomplete"));
}

TEST_F(BatchEndPage, PutsFilesWithOneReasonTogether) {
  BatchSummary summary;
  summary.failures = {failure("a.dng", RejectionReason::damaged), failure("x.dng", RejectionReason::jpegXL),
                      failure("b.dng", RejectionReason::damaged)};
  const std::string details = batchEndPage(summary).details;
  EXPECT_THAT(details, testing::StartsWith("2 files: This DNG appears incomplete"));
  EXPECT_THAT(details, HasSubstr("\na.dng, b.dng\n\nx.dng: This DNG uses JPEG XL"));
}

TEST_F(BatchEndPage, ListsMoreThanTheFirstFiveFailures) {
  BatchSummary summary;
  for (int i = 1; i <= 7; ++i)
    summary.failures.push_back(failure("L" + std::to_string(i) + ".DNG", RejectionReason::damaged));
  EXPECT_THAT(batchEndPage(summary).details, HasSubstr("L7.DNG"));
  EXPECT_THAT(BatchTexts::alertText(summary), Not(HasSubstr("L7.DNG")));
}

TEST_F(BatchEndPage, UnderstandsFailuresInALanguageOfBefore) {
  BatchSummary summary;
  summary.failures = {failure("a.dng", RejectionReason::damaged)};
  Localization::setLanguageOverride(AppLanguage::french);
  EXPECT_EQ(batchEndPage(summary).note, Localization::helpLine(AppLanguage::english));
  EXPECT_EQ(batchEndPage(summary).first, "Traitement terminé");
}

TEST_F(BatchEndPage, TellsOfABatchThatFailedAsAWhole) {
  BatchSummary summary;
  summary.failed = 1;
  summary.failures = {{"", "broken"}};
  EXPECT_EQ(batchEndPage(summary).details, "broken");
}

TEST_F(BatchEndPage, SaysWhyThereIsNoLog) {
  BatchSummary summary;
  summary.logError = "disk full";
  EXPECT_EQ(batchEndPage(summary).last, "Log: No log generated\nLog writing failed: disk full");
}

TEST_F(BatchEndPage, KeepsAnEndlessListOfNamesShort) {
  BatchSummary summary;
  for (int i = 0; i < 1000; ++i)
    summary.failures.push_back(failure(std::to_string(i) + ".DNG", RejectionReason::damaged));
  EXPECT_THAT(batchEndPage(summary).details, testing::StartsWith("1000 files: "));
  EXPECT_THAT(batchEndPage(summary).details, testing::EndsWith("99.DNG, …"));
}

}  // namespace
}  // namespace tessaly
