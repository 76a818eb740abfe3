#include "batch/BatchJSON.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace tessaly {
namespace {

TEST(BatchJSON, HasTheFieldsOfTheRecordInItsOrder) {
  BatchSummary summary;
  summary.total = 40;
  summary.succeeded = 37;
  summary.failed = 2;
  summary.skipped = 1;
  summary.cancelled = true;
  summary.failures = {{"a\"é.dng", "no"}, {"", "whole"}};
  summary.logURL = "/out/Repair Log-2026-11-15T20-23-12Z.csv";
  EXPECT_EQ(batchSummaryJSON(summary).dump(),
            R"({"total":40,"succeeded":37,"failed":2,"skipped":1,"cancelled":true,)"
            R"("failures":[{"filename":"a\"é.dng","message":"no"},{"filename":"","message":"whole"}],)"
            R"("logURL":"/out/Repair Log-2026-11-15T20-23-12Z.csv"})");
}

TEST(BatchJSON, OmitsWhatIsAbsent) {
  EXPECT_EQ(batchSummaryJSON({}).dump(),
            R"({"total":0,"succeeded":0,"failed":0,"skipped":0,"cancelled":false,"failures":[]})");
}

TEST(BatchJSON, KeepsTheLogsErrorLast) {
  BatchSummary summary;
  summary.logError = "No space left on device";
  EXPECT_EQ(batchSummaryJSON(summary).dump(),
            R"({"total":0,"succeeded":0,"failed":0,"skipped":0,"cancelled":false,"failures":[],)"
            R"("logError":"No space left on device"})");
}

TEST(BatchJSON, HasAnArrayOfOneObjectForOneFailure) {
  BatchSummary summary;
  summary.failures = {{"a.dng", "no"}};
  EXPECT_EQ(batchSummaryJSON(summary)["failures"].dump(), R"([{"filename":"a.dng","message":"no"}])");
}

TEST(BatchJSON, ShowsAPathThatIsNotUTF8WithReplacementCharacters) {
  BatchSummary summary;
  summary.logURL = "/out\xFF/log.csv";
  EXPECT_EQ(batchSummaryJSON(summary)["logURL"].get<std::string>(), "/out\uFFFD/log.csv");
}

}  // namespace
}  // namespace tessaly
