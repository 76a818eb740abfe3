// Every listed file is accounted for, whatever becomes of it: memory that runs out, entries that cannot be looked at,
// names that others take meanwhile.
#include "batch/BatchFolders.h"
#include "batch/BatchProcessor.h"
#include "batch/FailingMemory.h"
#include "dng/DNGError.h"
#include "platform/UUID.h"
#include "support/OrdinaryUser.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <chrono>
#include <new>

namespace tessaly {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::allAllocations;
using tests::allocationsThatFail;
using tests::BatchFolders;
using tests::namesIn;
using tests::readText;
using tests::writeText;

using Path = std::filesystem::path;

const BatchOptions skipping{ExistingOutputPolicy::skip, true};
const BatchOptions numbering{ExistingOutputPolicy::numberedCopy, true};

class Accounting : public testing::Test {
 protected:
  using Repair = std::function<DNGWriteResult(const Path& source, const Path& destination)>;

  [[nodiscard]] BatchSummary run(const Repair& repair, const BatchOptions& options = skipping) {
    BatchProcessor processor([&](const Path& source, const Path& destination, const CameraProfile&, RepairWorkspace&) {
      return repair(source, destination);
    });
    return processor.processFolder(folders.input,
                                   {.outputFolder = folders.output,
                                    .options = options,
                                    .file = [this](const BatchFileOutcome& outcome) { outcomes.push_back(outcome); }});
  }

  static DNGWriteResult copy(const Path& source, const Path& destination) {
    writeText(destination, source.filename().native());
    return {};
  }

  const BatchFolders folders{{"a.dng", "b.dng", "c.dng"}};
  std::vector<BatchFileOutcome> outcomes;
};

TEST_F(Accounting, CountsFilesAsFailedWhoseWorkerHadNoMemoryLeft) {
  const BatchSummary summary = run([](const Path&, const Path&) -> DNGWriteResult {
    allocationsThatFail() = allAllocations;
    throw std::bad_alloc();
  });
  EXPECT_EQ(summary.total, 3);
  EXPECT_EQ(summary.failed, 3);
  EXPECT_EQ(summary.failures.size(), 3U);
  EXPECT_THAT(summary.unaccounted, IsEmpty());
  ASSERT_EQ(outcomes.size(), 3U);
  EXPECT_EQ(outcomes[0].technical, "Unable to read: Cannot allocate memory");
  EXPECT_EQ(tests::lines(readText(*summary.logURL)).size(), 4U);
}

TEST_F(Accounting, CountsACopyAsMadeThatCouldNotBeWrittenDownAtOnce) {
  const BatchSummary summary = run([](const Path& source, const Path& destination) {
    const DNGWriteResult result = copy(source, destination);
    if (source.filename() == "c.dng") allocationsThatFail() = allAllocations;
    return result;
  });
  EXPECT_EQ(summary.succeeded, 3);
  EXPECT_EQ(summary.failed, 0);
  EXPECT_EQ(tests::lines(readText(*summary.logURL)).back(), "\"c.dng\",Success,0,\"\"");
}

TEST_F(Accounting, NamesAFileOfWhichNotEvenTheEndKnowsAnything) {
  for (const char* other : {"b.dng", "c.dng"})
    std::filesystem::remove(folders.input / other);
  // With one file the run's own thread does nothing but wait by now.
  std::atomic<int>& ofTheRunsThread = allocationsThatFail();
  const BatchSummary summary = run([&](const Path&, const Path&) -> DNGWriteResult {
    ofTheRunsThread = 1;
    allocationsThatFail() = allAllocations;
    throw std::bad_alloc();
  });
  EXPECT_EQ(summary.total, 1);
  EXPECT_EQ(summary.failed, 0);
  EXPECT_THAT(summary.unaccounted, ElementsAre(BatchOmission{"a.dng", "Cannot allocate memory"}));
}

TEST_F(Accounting, TakesFilesForDroppedThatWereNotBegunWhenTheRunWasStopped) {
  BatchProcessor* stopped = nullptr;
  BatchProcessor processor([&](const Path&, const Path&, const CameraProfile&, RepairWorkspace&) -> DNGWriteResult {
    stopped->cancel();
    allocationsThatFail() = allAllocations;
    throw std::bad_alloc();
  });
  stopped = &processor;
  const BatchSummary summary =
      processor.processFolder(folders.input, {.outputFolder = folders.output, .options = skipping});
  EXPECT_EQ(summary.failed, 1) << "the one that was begun";
  EXPECT_THAT(summary.unaccounted, IsEmpty());
}

// Names that others take.

TEST_F(Accounting, SkipsAFileWhoseCopySomebodyElseHasMadeMeanwhileWithoutReadingIt) {
  std::vector<std::string> read;
  const BatchSummary summary = run([&](const Path& source, const Path& destination) {
    read.push_back(source.filename());
    writeText(destination.parent_path() / "b.dng", "somebody else's");
    return copy(source, destination);
  });
  EXPECT_THAT(read, ElementsAre("a.dng", "c.dng"));
  EXPECT_EQ(summary.succeeded, 2);
  EXPECT_EQ(summary.skipped, 1);
  EXPECT_EQ(readText(folders.output / "b.dng"), "somebody else's");
  EXPECT_EQ(outcomes.at(1).details, "Output file already exists");
}

DNGWriteResult refuseTakenName(const Path&, const Path& destination) {
  throw DNGError::file("x", DNGError::unreadable("File exists").at({EEXIST, destination.parent_path()}));
}

TEST_F(Accounting, SkipsAFileWhoseNameIsTakenAtTheLastMoment) {
  EXPECT_EQ(run(refuseTakenName).skipped, 3);
}

TEST_F(Accounting, FailsItWhereCopiesAreNumbered) {
  const BatchSummary summary = run(refuseTakenName, numbering);
  EXPECT_EQ(summary.failed, 3);
  EXPECT_EQ(outcomes.at(0).technical, "Unable to read: File exists");
  EXPECT_THAT(outcomes.at(0).message, HasSubstr("a file of that name already exists there"));
}

TEST_F(Accounting, TellsWhatTheDestinationRefusedInTheLogAndInTheMessage) {
  const BatchSummary summary = run([](const Path&, const Path& destination) -> DNGWriteResult {
    throw DestinationError(ENOSPC, destination.parent_path());
  });
  const std::string told = "a.dng: Tessaly couldn't write to the folder “" + folders.output.string() +
                           "”: no space left on its disk. Free some space or choose another folder, then retry.";
  EXPECT_EQ(summary.failures.at(0).message, told);
  EXPECT_EQ(outcomes.at(0).technical, "Unable to read: No space left on device");
  EXPECT_EQ(tests::lines(readText(*summary.logURL)).at(1), "\"a.dng\",Failed,0,\"" + told + "\"");
}

// What the folders hold besides.

TEST_F(Accounting, NamesEntriesThatCannotBeLookedAt) {
  using std::filesystem::perms;
  std::filesystem::permissions(folders.folder.path(), perms::all);
  std::filesystem::permissions(folders.input, perms::others_read);  // names, but nothing about them
  EXPECT_EQ(tests::asOrdinaryUser([&] {
              const BatchSummary summary = run(copy);
              const BatchOmission first{"a.dng", "Permission denied"};
              return summary.unexamined.size() == 3 && summary.unexamined.front() == first && summary.total == 0 ? 0
                                                                                                                 : 1;
            }),
            0);
  std::filesystem::permissions(folders.input, perms::all);
}

TEST_F(Accounting, RemovesWhatAKilledRunHasLeftAndNamesWhatItLeaves) {
  const Path old = folders.output / ("." + UUID::random().text() + ".partial");
  const Path fresh = folders.output / ("." + UUID::random().text() + ".partial");
  folders.makeOutput({old.filename(), fresh.filename()});
  last_write_time(old, std::filesystem::file_time_type::clock::now() - std::chrono::hours(25));
  const BatchSummary summary = run(copy);
  EXPECT_EQ(summary.succeeded, 3);
  EXPECT_FALSE(exists(old));
  EXPECT_TRUE(exists(fresh));
  EXPECT_THAT(summary.leftFiles, ElementsAre(LeftFile{fresh, LeftFile::Reason::recent}));
}

}  // namespace
}  // namespace tessaly
