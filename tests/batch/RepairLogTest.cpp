#include "batch/RepairLog.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <system_error>

namespace tessaly {
namespace {

using Status = BatchFileOutcome::Status;
using tests::readText;
using tests::TemporaryFolder;
using tests::writeText;

const Timestamp moment = *parseISO8601("2026-11-15T20:23:12Z");

BatchFileOutcome outcome(const std::filesystem::path& source, Status status, std::int64_t samples = 0,
                         const std::string& details = "") {
  BatchFileOutcome result;
  result.source = source;
  result.status = status;
  result.repairedSamples = samples;
  result.details = details;
  return result;
}

TEST(RepairLog, QuotesNameAndDetailsAndNothingElse) {
  EXPECT_EQ(RepairLog::row(outcome("/in/L1000122.DNG", Status::success, 12345)), "\"L1000122.DNG\",Success,12345,\"\"");
  EXPECT_EQ(RepairLog::row(outcome("/in/L1000123.DNG", Status::skipped, 0, "Output file already exists")),
            "\"L1000123.DNG\",Skipped,0,\"Output file already exists\"");
  EXPECT_EQ(RepairLog::row(outcome("c.NEF", Status::failed, 0, "c.NEF: no")), "\"c.NEF\",Failed,0,\"c.NEF: no\"");
}

TEST(RepairLog, DoublesQuotesAndKeepsCommasAndLineFeeds) {
  EXPECT_EQ(RepairLog::row(outcome("a\"b,c\nd.dng", Status::failed, 0, "say \"no\", twice\n")),
            "\"a\"\"b,c\nd.dng\",Failed,0,\"say \"\"no\"\", twice\n\"");
}

TEST(RepairLog, ShowsANameThatIsNotUTF8WithReplacementCharacters) {
  EXPECT_EQ(RepairLog::row(outcome("a\xFF.dng", Status::success, 0)), "\"a\uFFFD.dng\",Success,0,\"\"");
}

TEST(RepairLog, BearsTheTimeInItsName) {
  EXPECT_EQ(RepairLog::fileName(moment), "Repair Log-2026-11-15T20-23-12Z.csv");
}

TEST(RepairLog, SeparatesLinesAndEndsWithoutALineFeed) {
  const TemporaryFolder folder;
  const auto location =
      RepairLog::write({"File,Status,Repaired Samples,Details", "\"é\",Success,1,\"\""}, folder.path(), moment);
  EXPECT_EQ(location, folder / "Repair Log-2026-11-15T20-23-12Z.csv");
  EXPECT_EQ(readText(location), "File,Status,Repaired Samples,Details\n\"é\",Success,1,\"\"");
}

TEST(RepairLog, ReplacesTheLogOfTheSameSecondAndLeavesNothingElse) {
  const TemporaryFolder folder;
  RepairLog::write({"a longer first log"}, folder.path(), moment);
  const auto location = RepairLog::write({"second"}, folder.path(), moment);
  EXPECT_EQ(readText(location), "second");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST(RepairLog, IsNeverWrittenThroughALinkThatWasPutUnderItsName) {
  const TemporaryFolder folder;
  writeText(folder / "precious", "untouched");
  std::filesystem::create_symlink("precious", folder / RepairLog::fileName(moment));
  const auto location = RepairLog::write({"x"}, folder.path(), moment);
  EXPECT_TRUE(is_regular_file(symlink_status(location)));
  EXPECT_EQ(readText(location), "x");
  EXPECT_EQ(readText(folder / "precious"), "untouched");
}

TEST(RepairLog, CannotBeWrittenIntoAMissingFolder) {
  const TemporaryFolder folder;
  EXPECT_THROW(RepairLog::write({"x"}, folder / "missing", moment), std::system_error);
}

TEST(RepairLog, LeavesAFolderOfItsNameAloneAndNothingBehind) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / RepairLog::fileName(moment));
  EXPECT_THROW(RepairLog::write({"x"}, folder.path(), moment), std::system_error);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

}  // namespace
}  // namespace tessaly
