// The run of a batch around the repair of one file, which is replaced here by functions that a test controls.
#include "batch/BatchFolders.h"
#include "batch/BatchProcessor.h"
#include "dng/DNGError.h"
#include "localization/Localization.h"
#include "support/OrdinaryUser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <chrono>
#include <condition_variable>
#include <future>
#include <latch>
#include <map>
#include <mutex>
#include <new>
#include <set>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace tessaly {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using tests::BatchFolders;
using tests::lines;
using tests::Names;
using tests::namesIn;
using tests::readText;
using tests::writeText;

using Path = std::filesystem::path;
using Status = BatchFileOutcome::Status;

const BatchOptions withoutLog{ExistingOutputPolicy::skip, false};
const BatchOptions withLog{ExistingOutputPolicy::skip, true};
const BatchOptions numberedCopies{ExistingOutputPolicy::numberedCopy, false};

/// A repair that writes the source's name into the destination and claims to have rebuilt seven samples.
DNGWriteResult pretendRepair(const Path& source, const Path& destination) {
  if (std::filesystem::exists(destination)) throw DNGError::invalid("Output exists or equals source");
  writeText(destination, source.filename().native());
  DNGWriteResult result;
  result.report.changedSamples = 7;
  return result;
}

BatchProcessor::RepairFunction pretending() {
  return [](const Path& source, const Path& destination, const CameraProfile&, RepairWorkspace&) {
    return pretendRepair(source, destination);
  };
}

template <typename Error>
BatchProcessor::RepairFunction throwing(Error error) {
  return [error](const Path&, const Path&, const CameraProfile&, RepairWorkspace&) -> DNGWriteResult { throw error; };
}

/// Holds whoever comes until it is opened.
class Gate {
 public:
  void pass() {
    std::unique_lock guard(lock_);
    ++waiting_;
    changed_.notify_all();
    changed_.wait(guard, [this] { return open_; });
  }

  void awaitWaiting(int count) {
    std::unique_lock guard(lock_);
    changed_.wait(guard, [&] { return waiting_ >= count; });
  }

  void open() {
    const std::lock_guard guard(lock_);
    open_ = true;
    changed_.notify_all();
  }

 private:
  std::mutex lock_;
  std::condition_variable changed_;
  int waiting_ = 0;
  bool open_ = false;
};

BatchSummary runIn(BatchProcessor& processor, const BatchFolders& folders, const BatchOptions& options = withoutLog,
                   std::int64_t workers = 2, const BatchProcessor::ProgressHandler& progress = nullptr,
                   const BatchFileHandler& file = nullptr) {
  return processor.processFolder(
      folders.input,
      {.outputFolder = folders.output, .workers = workers, .options = options, .progress = progress, .file = file});
}

BatchSummary run(BatchProcessor::RepairFunction repair, const BatchFolders& folders,
                 const BatchOptions& options = withoutLog, std::int64_t workers = 2,
                 const BatchProcessor::ProgressHandler& progress = nullptr, const BatchFileHandler& file = nullptr) {
  BatchProcessor processor(std::move(repair));
  return runIn(processor, folders, options, workers, progress, file);
}

BatchSummary failureOfWhole(const std::string& message, const std::optional<BatchObstacle>& obstacle = std::nullopt) {
  BatchSummary summary;
  summary.failed = 1;
  summary.failures.push_back({"", message, obstacle});
  return summary;
}

BatchSummary refusedSource(const std::string& message, int errorNumber, const Path& place) {
  return failureOfWhole(message, BatchObstacle{errorNumber, place, false});
}

BatchSummary refusedDestination(const std::string& message, int errorNumber, const Path& place) {
  return failureOfWhole(message, BatchObstacle{errorNumber, place, true});
}

BatchSummary succeeded(std::int64_t count) {
  BatchSummary summary;
  summary.total = count;
  summary.succeeded = count;
  return summary;
}

// Problems of the batch as a whole.

TEST(BatchProcessor, RefusesAnOutputFolderThatIsTheInputFolder) {
  const BatchFolders folders({"a.dng"});
  std::filesystem::create_directory_symlink(folders.input, folders.folder / "link");
  for (const Path& output : {folders.input, folders.input / "", folders.input / "../input", folders.folder / "link"}) {
    BatchProcessor processor(pretending());
    EXPECT_EQ(processor.processFolder(folders.input, {.outputFolder = output, .options = withLog}),
              failureOfWhole("Input and output folders cannot be the same"))
        << output;
  }
  EXPECT_THAT(namesIn(folders.input), ElementsAre("a.dng"));
}

TEST(BatchProcessor, RefusesEqualFoldersBeforeItLooksAtThem) {
  BatchProcessor processor(pretending());
  EXPECT_EQ(processor.processFolder("/no/such/b", {.outputFolder = "/no/such/b/../b", .options = withLog}),
            failureOfWhole("Input and output folders cannot be the same"));
}

TEST(BatchProcessor, ReportsAnInputFolderThatCannotBeListed) {
  BatchFolders folders;
  folders.input = folders.folder / "missing";
  EXPECT_EQ(run(pretending(), folders, withLog), refusedSource("No such file or directory", ENOENT, folders.input));
  writeText(folders.input, "a file");
  EXPECT_EQ(run(pretending(), folders, withLog), refusedSource("Not a directory", ENOTDIR, folders.input));
  EXPECT_FALSE(std::filesystem::exists(folders.output));
}

TEST(BatchProcessor, ReportsAFolderWithoutSourceFiles) {
  const BatchFolders folders({"notes.txt", ".hidden.dng"});
  std::filesystem::create_directory(folders.input / "sub");
  writeText(folders.input / "sub/x.dng", "");
  EXPECT_EQ(run(pretending(), folders, withLog),
            failureOfWhole("No DNG files were found at the top level of the selected folder. Select the folder that "
                           "directly contains the source DNG files."));
  EXPECT_FALSE(std::filesystem::exists(folders.output));
}

TEST(BatchProcessor, ReportsAnOutputFolderThatCannotBeMade) {
  BatchFolders folders({"a.dng"});
  writeText(folders.output, "a file in the way");
  EXPECT_EQ(run(pretending(), folders, withLog), refusedDestination("Not a directory", ENOTDIR, folders.output));
  folders.output /= "inside";
  EXPECT_EQ(run(pretending(), folders, withLog), refusedDestination("Not a directory", ENOTDIR, folders.output));
}

/// Runs a batch as a user who may not do everything and compares its summary there.
bool ordinaryUserGets(const BatchSummary& expected, const BatchFolders& folders) {
  std::filesystem::permissions(folders.folder.path(), std::filesystem::perms::all);
  return tests::asOrdinaryUser([&] { return run(pretending(), folders) == expected ? 0 : 1; }) == 0;
}

TEST(BatchProcessor, ReportsFoldersWithoutPermission) {
  using std::filesystem::perms;
  const BatchFolders folders({"a.dng"});
  std::filesystem::permissions(folders.input, perms::none);
  EXPECT_TRUE(ordinaryUserGets(refusedSource("Permission denied", EACCES, folders.input), folders));
  std::filesystem::permissions(folders.input, perms::all);
  EXPECT_TRUE(ordinaryUserGets(succeeded(1), folders));
}

TEST(BatchProcessor, ReportsAnOutputFolderThatMayNotBeMade) {
  using std::filesystem::perms;
  BatchFolders folders({"a.dng"});
  folders.makeOutput({});
  std::filesystem::permissions(folders.output, perms::owner_all | perms::others_read | perms::others_exec);
  folders.output /= "new";
  EXPECT_TRUE(ordinaryUserGets(refusedDestination("Permission denied", EACCES, folders.output), folders));
}

TEST(BatchProcessor, TakesEveryNameForFreeWhereTheOutputFolderCannotBeListed) {
  using std::filesystem::perms;
  const BatchFolders folders({"a.dng", "b.dng"});
  folders.makeOutput({"a.dng"});
  std::filesystem::permissions(folders.output, perms::owner_all | perms::others_write | perms::others_exec);
  std::filesystem::permissions(folders.folder.path(), perms::all);
  // The name that is taken after all is seen before its file is read.
  EXPECT_EQ(tests::asOrdinaryUser([&] {
              const BatchSummary summary = run(pretending(), folders);
              return summary.succeeded == 1 && summary.failed == 0 && summary.skipped == 1 ? 0 : 1;
            }),
            0);
  EXPECT_EQ(readText(folders.output / "a.dng"), "earlier");
}

TEST(BatchProcessor, IsNotCancelledWhenTheWholeBatchFails) {
  const BatchFolders folders;
  BatchProcessor processor(pretending());
  processor.cancel();
  EXPECT_FALSE(runIn(processor, folders).cancelled);
}

// Outputs and their names.

TEST(BatchProcessor, WritesEverySourceUnderItsNameIntoAFolderThatItMakes) {
  BatchFolders folders({"a.DNG", "b.dng", "c.NEF"});
  folders.output = folders.folder / "some/where/new";
  EXPECT_EQ(run(pretending(), folders), succeeded(3));
  EXPECT_THAT(namesIn(folders.output), ElementsAre("a.DNG", "b.dng", "c.NEF"));
  EXPECT_EQ(readText(folders.output / "b.dng"), "b.dng");
}

TEST(BatchProcessor, SkipsASourceWhoseNameIsTakenInAnyLetterCase) {
  const BatchFolders folders({"A.DNG", "b.dng"});
  folders.makeOutput({"a.dng"});
  std::atomic<int> repairs = 0;
  const auto counting = [&](const Path& source, const Path& destination, const CameraProfile&, RepairWorkspace&) {
    ++repairs;
    return pretendRepair(source, destination);
  };
  const BatchSummary summary = run(counting, folders, withLog, 1);
  EXPECT_EQ(summary.total, 2);
  EXPECT_EQ(summary.succeeded, 1);
  EXPECT_EQ(summary.skipped, 1);
  EXPECT_EQ(summary.failed, 0);
  EXPECT_EQ(repairs, 1) << "nothing is read for a source that is skipped";
  EXPECT_EQ(readText(folders.output / "a.dng"), "earlier");
  EXPECT_THAT(lines(readText(*summary.logURL)),
              ElementsAre("File,Status,Repaired Samples,Details", "\"A.DNG\",Skipped,0,\"Output file already exists\"",
                          "\"b.dng\",Success,7,\"\""));
}

TEST(BatchProcessor, CountsHiddenEntriesOfTheOutputFolderAsTaken) {
  const BatchFolders folders({"a.dng"});
  folders.makeOutput({});
  std::filesystem::create_symlink("nowhere", folders.output / "a.dng");
  EXPECT_EQ(run(pretending(), folders).skipped, 1);
}

TEST(BatchProcessor, WritesNumberedCopiesWhereNamesAreTaken) {
  const BatchFolders folders({"a.dng", "A-2.dng"});
  folders.makeOutput({"a.dng"});
  EXPECT_EQ(run(pretending(), folders, numberedCopies), succeeded(2));
  EXPECT_THAT(namesIn(folders.output), UnorderedElementsAre("a.dng", "A-2.dng", "a-3.dng"));
  EXPECT_EQ(readText(folders.output / "a-3.dng"), "a.dng");
}

TEST(BatchProcessor, TreatsTwoSourcesThatDifferInCaseAsACollision) {
  const BatchFolders folders({"A.dng", "a.dng"});
  const BatchSummary summary = run(pretending(), folders);
  EXPECT_EQ(summary.succeeded, 1);
  EXPECT_EQ(summary.skipped, 1);
  EXPECT_THAT(namesIn(folders.output), ElementsAre("A.dng"));
}

/// Which copy each source got when every repair takes a different time.
std::map<std::string, std::string> copiesWith(std::int64_t workers) {
  const BatchFolders folders({"a.dng", "A.dng", "a.DNG", "A.DNG", "b.dng", "B.dng", "a-2.dng"});
  folders.makeOutput({"a-3.dng"});
  std::atomic<int> started = 0;
  run(
      [&](const Path& source, const Path& destination, const CameraProfile&, RepairWorkspace&) {
        std::this_thread::sleep_for(std::chrono::milliseconds((++started * 7) % 5));
        return pretendRepair(source, destination);
      },
      folders, numberedCopies, workers);
  std::map<std::string, std::string> copies;
  for (const std::string& name : namesIn(folders.output))
    copies[readText(folders.output / name)] = name;
  return copies;
}

TEST(BatchProcessor, NamesCopiesTheSameWithAnyNumberOfWorkers) {
  const auto expected = copiesWith(1);
  EXPECT_EQ(expected.size(), 8U) << "seven sources and the earlier file";
  for (int round = 0; round < 5; ++round)
    EXPECT_EQ(copiesWith(4), expected);
}

TEST(BatchProcessor, KeepsNamesThatAreNotUTF8) {
  const BatchFolders folders({"a\xFF.dng"});
  std::string shown;
  const auto summary =
      run(pretending(), folders, withLog, 1, [&](const BatchProgress& p) { shown = p.currentFilename; });
  EXPECT_TRUE(std::filesystem::exists(folders.output / "a\xFF.dng"));
  EXPECT_EQ(shown, "a\uFFFD.dng");
  EXPECT_EQ(lines(readText(*summary.logURL)).back(), "\"a\uFFFD.dng\",Success,7,\"\"");
}

TEST(BatchProcessor, GivesEveryRepairTheProfileOfTheRun) {
  const BatchFolders folders({"a.dng", "b.dng"});
  CameraProfile profile;
  profile.name = "M body";
  std::atomic<int> right = 0;
  BatchProcessor processor(
      [&](const Path& source, const Path& destination, const CameraProfile& given, RepairWorkspace&) {
        right += given == profile ? 1 : 0;
        return pretendRepair(source, destination);
      });
  processor.processFolder(folders.input,
                          {.outputFolder = folders.output, .profile = profile, .workers = 2, .options = withoutLog});
  EXPECT_EQ(right, 2);
}

// Failures of one file.

TEST(BatchProcessor, GoesOnAfterAFileThatFails) {
  const BatchFolders folders({"a.dng", "b.dng", "c.dng"});
  const auto failingB = [](const Path& source, const Path& destination, const CameraProfile&, RepairWorkspace&) {
    if (source.filename() == "b.dng") throw DNGError::file("b.dng", DNGError::truncated("Raw segment"));
    return pretendRepair(source, destination);
  };
  const std::string message =
      "b.dng: This DNG appears incomplete or has invalid image information. Copy the original file again from your "
      "card or backup and retry. For help, email support@tessaly.example with your camera model and we'll look at "
      "adding support.";
  const BatchSummary summary = run(failingB, folders, withLog, 1);
  EXPECT_EQ(summary.total, 3);
  EXPECT_EQ(summary.succeeded, 2);
  EXPECT_EQ(summary.failed, 1);
  EXPECT_THAT(summary.failures, ElementsAre(BatchFailure{"b.dng", message}));
  EXPECT_THAT(lines(readText(*summary.logURL)),
              ElementsAre("File,Status,Repaired Samples,Details", "\"a.dng\",Success,7,\"\"",
                          "\"b.dng\",Failed,0,\"" + message + "\"", "\"c.dng\",Success,7,\"\""));
}

/// The outcome of one source whose repair throws.
template <typename Error>
BatchFileOutcome outcomeOf(Error error) {
  const BatchFolders folders({"a.dng"});
  BatchFileOutcome seen;
  const BatchSummary summary =
      run(throwing(error), folders, withoutLog, 1, nullptr, [&](const BatchFileOutcome& outcome) { seen = outcome; });
  EXPECT_EQ(summary.failed, 1);
  EXPECT_THAT(summary.failures, ElementsAre(BatchFailure{"a.dng", seen.message}));
  EXPECT_EQ(seen.status, Status::failed);
  EXPECT_EQ(seen.repairedSamples, 0);
  return seen;
}

TEST(BatchProcessor, TellsTheTechnicalCauseOfTheInnermostError) {
  const DNGError inner = DNGError::invalid("Raw dimensions");
  EXPECT_EQ(outcomeOf(DNGError::file("a.dng", DNGError::file("b.dng", inner))).technical,
            "Invalid DNG structure: Raw dimensions");
}

TEST(BatchProcessor, FailsOnlyTheFileWhoseRepairThrowsAnythingElse) {
  const auto full = std::make_error_code(std::errc::no_space_on_device);
  EXPECT_EQ(outcomeOf(std::system_error(full)).technical, "Unable to read: No space left on device");
  EXPECT_EQ(outcomeOf(std::bad_alloc()).technical, "Unable to read: Cannot allocate memory");
  EXPECT_EQ(outcomeOf(std::runtime_error("odd")).technical, "Unable to read: odd");
  EXPECT_EQ(outcomeOf(7).technical, "Unable to read: Unknown error");
  EXPECT_THAT(outcomeOf(7).message, testing::StartsWith("a.dng: Tessaly couldn't open this file."));
}

TEST(BatchProcessor, WritesTheLogInEnglishAndMessagesInTheInterfacesLanguage) {
  const BatchFolders folders({"a.dng"});
  Localization::setLanguageOverride(AppLanguage::french);
  const BatchSummary summary = run(throwing(DNGError::profileMismatch("Camera model")), folders, withLog);
  Localization::setLanguageOverride(AppLanguage::english);
  EXPECT_EQ(summary.failures.at(0).message,
            Localization::rejectionMessage(RejectionReason::mismatch, "a.dng", AppLanguage::french));
  EXPECT_EQ(lines(readText(*summary.logURL)).at(1),
            "\"a.dng\",Failed,0,\"" +
                Localization::rejectionMessage(RejectionReason::mismatch, "a.dng", AppLanguage::english) + "\"");
}

TEST(BatchProcessor, ListsAllFailuresInFinishingOrder) {
  const BatchFolders folders = BatchFolders::withSources(7);
  const BatchSummary summary = run(throwing(DNGError::truncated("x")), folders, withLog, 1);
  ASSERT_EQ(summary.failures.size(), 7U);
  for (std::size_t index = 0; index < 7; ++index)
    EXPECT_EQ(summary.failures[index].filename, "a" + std::to_string(index) + ".dng");
  EXPECT_THAT(lines(readText(*summary.logURL)), SizeIs(8));
}

// Progress.

TEST(BatchProcessor, ReportsEveryFileOnceWithConsistentCounts) {
  const BatchFolders folders = BatchFolders::withSources(40);
  folders.makeOutput({"a3.dng", "a7.dng"});
  std::mutex lock;
  std::vector<BatchProgress> snapshots;
  const auto failingEven = [](const Path& source, const Path& destination, const CameraProfile&, RepairWorkspace&) {
    if (source.filename() == "a0.dng" || source.filename() == "a20.dng") throw DNGError::truncated("x");
    return pretendRepair(source, destination);
  };
  run(failingEven, folders, withoutLog, 4, [&](const BatchProgress& progress) {
    const std::lock_guard guard(lock);
    snapshots.push_back(progress);
  });
  std::set<std::int64_t> completed;
  std::set<std::string> names;
  for (const BatchProgress& snapshot : snapshots) {
    EXPECT_EQ(snapshot.total, 40);
    EXPECT_EQ(snapshot.completed, snapshot.succeeded + snapshot.failed + snapshot.skipped);
    completed.insert(snapshot.completed);
    names.insert(snapshot.currentFilename);
    if (snapshot.completed == 40) {
      EXPECT_EQ(snapshot.succeeded, 36);
      EXPECT_EQ(snapshot.failed, 2);
      EXPECT_EQ(snapshot.skipped, 2);
    }
  }
  EXPECT_EQ(snapshots.size(), 40U);
  EXPECT_EQ(completed.size(), 40U);
  EXPECT_EQ(*completed.rbegin(), 40);
  EXPECT_EQ(names.size(), 40U);
}

TEST(BatchProcessor, ReportsTheOutcomeOfAFileBeforeItsProgress) {
  const BatchFolders folders({"a.dng", "b.dng"});
  folders.makeOutput({"b.dng"});
  Names events;
  run(
      pretending(), folders, withoutLog, 1,
      [&](const BatchProgress& progress) { events.push_back("progress " + progress.currentFilename); },
      [&](const BatchFileOutcome& outcome) {
        events.push_back(outcome.source.filename().native() + " " + std::to_string(outcome.repairedSamples));
        EXPECT_EQ(outcome.source.parent_path(), folders.input);
        EXPECT_EQ(outcome.status, outcome.repairedSamples > 0 ? Status::success : Status::skipped);
      });
  EXPECT_THAT(events, ElementsAre("a.dng 7", "progress a.dng", "b.dng 0", "progress b.dng"));
}

TEST(BatchProcessor, CallsBackWithoutHoldingALock) {
  const BatchFolders folders = BatchFolders::withSources(4);
  std::barrier meeting(2);  // two callbacks at the same time, each of which also asks the processor to stop
  BatchProcessor processor(pretending());
  const auto summary = runIn(processor, folders, withoutLog, 2, [&](const BatchProgress&) {
    meeting.arrive_and_wait();
    processor.cancel();
  });
  EXPECT_TRUE(summary.cancelled);
}

TEST(BatchProcessor, GoesOnWhenACallbackThrows) {
  const BatchFolders folders = BatchFolders::withSources(5);
  const BatchSummary summary = run(
      pretending(), folders, withoutLog, 2, [](const BatchProgress&) { throw std::runtime_error("listener"); },
      [](const BatchFileOutcome&) { throw 7; });
  EXPECT_EQ(summary, succeeded(5));
}

// Workers.

/// How many repairs run at once when this many workers are asked for; each waits until `expected` do, and then a little
/// for one too many.
int concurrencyWith(std::int64_t workers, int expected) {
  const BatchFolders folders = BatchFolders::withSources(8);
  std::mutex lock;
  std::condition_variable changed;
  int running = 0;
  int most = 0;
  run(
      [&](const Path&, const Path&, const CameraProfile&, RepairWorkspace&) {
        std::unique_lock guard(lock);
        most = std::max(most, ++running);
        changed.notify_all();
        changed.wait_for(guard, std::chrono::seconds(20), [&] { return most >= expected; });
        changed.wait_for(guard, std::chrono::milliseconds(10), [&] { return most > expected; });
        --running;
        return DNGWriteResult{};
      },
      folders, withoutLog, workers);
  return most;
}

TEST(BatchProcessor, RunsOneToFourFilesAtOnce) {
  EXPECT_EQ(concurrencyWith(-3, 1), 1);
  EXPECT_EQ(concurrencyWith(0, 1), 1);
  EXPECT_EQ(concurrencyWith(1, 1), 1);
  EXPECT_EQ(concurrencyWith(2, 2), 2);
  EXPECT_EQ(concurrencyWith(3, 3), 3);
  EXPECT_EQ(concurrencyWith(4, 4), 4);
  EXPECT_EQ(concurrencyWith(5, 4), 4);
  EXPECT_EQ(concurrencyWith(9, 4), 4);
}

TEST(BatchProcessor, KeepsOneWorkspaceAWorker) {
  const BatchFolders folders = BatchFolders::withSources(30);
  std::mutex lock;
  std::map<RepairWorkspace*, std::set<std::thread::id>> users;
  run(
      [&](const Path&, const Path&, const CameraProfile&, RepairWorkspace& workspace) {
        const std::lock_guard guard(lock);
        users[&workspace].insert(std::this_thread::get_id());
        return DNGWriteResult{};
      },
      folders, withoutLog, 3);
  EXPECT_LE(users.size(), 3U);
  for (const auto& [workspace, threads] : users)
    EXPECT_EQ(threads.size(), 1U);
}

// Stopping.

TEST(BatchProcessor, LetsFilesInProgressFinishAndDropsTheRest) {
  const BatchFolders folders = BatchFolders::withSources(10);
  Gate gate;
  std::atomic<int> reports = 0;
  BatchProcessor processor([&](const Path& source, const Path& destination, const CameraProfile&, RepairWorkspace&) {
    gate.pass();
    return pretendRepair(source, destination);
  });
  auto ended = std::async(std::launch::async, [&] {
    return runIn(processor, folders, withLog, 2, [&](const BatchProgress&) { ++reports; });
  });
  gate.awaitWaiting(2);
  processor.cancel();
  processor.cancel();
  gate.open();
  const BatchSummary summary = ended.get();
  EXPECT_EQ(summary.total, 10);
  EXPECT_EQ(summary.succeeded, 2);
  EXPECT_EQ(summary.failed + summary.skipped, 0);
  EXPECT_TRUE(summary.cancelled);
  EXPECT_EQ(reports, 2);
  EXPECT_THAT(lines(readText(*summary.logURL)), SizeIs(3));
  EXPECT_THAT(namesIn(folders.output), ElementsAre(summary.logURL->filename().native(), "a0.dng", "a1.dng"));
}

TEST(BatchProcessor, StoppedBeforeItStartsTouchesNoFileAndWritesAnEmptyLog) {
  const BatchFolders folders = BatchFolders::withSources(10);
  BatchProcessor processor(pretending());
  processor.cancel();
  const BatchSummary summary = runIn(processor, folders, withLog);
  EXPECT_EQ(summary.total, 10);
  EXPECT_EQ(summary.succeeded + summary.failed + summary.skipped, 0);
  EXPECT_TRUE(summary.cancelled);
  EXPECT_EQ(readText(*summary.logURL), "File,Status,Repaired Samples,Details");
  EXPECT_THAT(namesIn(folders.output), SizeIs(1));
}

TEST(BatchProcessor, IsCancelledEvenWhenEveryFileHasFinished) {
  const BatchFolders folders({"a.dng", "b.dng"});
  BatchProcessor processor(pretending());
  const BatchSummary summary = runIn(processor, folders, withoutLog, 1, [&](const BatchProgress& progress) {
    if (progress.completed == 2) processor.cancel();
  });
  EXPECT_EQ(summary.succeeded, 2);
  EXPECT_TRUE(summary.cancelled);
}

// The log.

TEST(BatchProcessor, WritesNoLogUnlessAsked) {
  const BatchFolders folders({"a.dng"});
  EXPECT_EQ(run(pretending(), folders, withoutLog), succeeded(1));
  EXPECT_THAT(namesIn(folders.output), ElementsAre("a.dng"));
}

TEST(BatchProcessor, WritesTheLogIntoTheOutputFolder) {
  const BatchFolders folders({"a.dng"});
  const BatchSummary summary = run(pretending(), folders, BatchOptions{});
  ASSERT_TRUE(summary.logURL);
  EXPECT_EQ(summary.logURL->parent_path(), folders.output);
  EXPECT_THAT(summary.logURL->filename().native(),
              testing::MatchesRegex(
                  "Repair Log-[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]T[0-9][0-9]-[0-9][0-9]-[0-9][0-9]Z.csv"));
  EXPECT_FALSE(summary.logError);
}

TEST(BatchProcessor, CarriesTheReasonWhenTheLogCannotBeWritten) {
  const BatchFolders folders({"a.dng"});
  const auto removing = [&](const Path&, const Path&, const CameraProfile&, RepairWorkspace&) {
    std::filesystem::remove_all(folders.output);
    return DNGWriteResult{};
  };
  const BatchSummary summary = run(removing, folders, withLog);
  EXPECT_EQ(summary.succeeded, 1);
  EXPECT_EQ(summary.failed, 0);
  EXPECT_FALSE(summary.logURL);
  EXPECT_EQ(summary.logError, "No such file or directory");
}

// The background run.

TEST(BatchProcessor, ReturnsAtOnceAndCompletesOnceAtTheVeryEnd) {
  const BatchFolders folders = BatchFolders::withSources(6);
  Gate gate;
  std::atomic<int> reports = 0;
  std::atomic<int> completions = 0;
  std::atomic<int> reportsAtCompletion = 0;
  std::thread::id completionThread;
  BatchSummary result;
  std::promise<void> completed;
  {
    BatchProcessor processor([&](const Path& source, const Path& destination, const CameraProfile&, RepairWorkspace&) {
      gate.pass();
      return pretendRepair(source, destination);
    });
    processor.process(
        folders.input, folders.output, {}, 0, withoutLog, [&](const BatchProgress&) { ++reports; },
        [&](const BatchSummary& summary) {
          ++completions;
          reportsAtCompletion = reports.load();
          completionThread = std::this_thread::get_id();
          result = summary;
        });
    EXPECT_EQ(completions, 0);
    gate.open();
  }
  EXPECT_EQ(completions, 1);
  EXPECT_EQ(reportsAtCompletion, 6);
  EXPECT_EQ(result, succeeded(6));
  EXPECT_NE(completionThread, std::this_thread::get_id());
}

TEST(BatchProcessor, MayBeDroppedByItsOwnCompletion) {
  const BatchFolders folders({"a.dng"});
  Gate gate;
  std::promise<BatchSummary> dropped;
  auto processor = std::make_shared<BatchProcessor>(
      [&](const Path& source, const Path& destination, const CameraProfile&, RepairWorkspace&) {
        gate.pass();
        return pretendRepair(source, destination);
      });
  BatchProcessor* const started = processor.get();
  started->process(folders.input, folders.output, {}, 1, withoutLog, nullptr,
                   [&dropped, &processor](const BatchSummary& summary) {
                     processor.reset();
                     dropped.set_value(summary);
                   });
  gate.open();
  EXPECT_EQ(dropped.get_future().get(), succeeded(1));
}

TEST(BatchProcessor, SurvivesACompletionThatThrows) {
  const BatchFolders folders({"a.dng"});
  std::atomic<int> completions = 0;
  {
    BatchProcessor processor(pretending());
    processor.process(folders.input, folders.output, {}, 1, withoutLog, nullptr, [&](const BatchSummary&) {
      ++completions;
      throw std::runtime_error("listener");
    });
  }
  EXPECT_EQ(completions, 1);
}

TEST(BatchProcessor, CompletesWithAFailureOfTheWholeBatchToo) {
  std::promise<BatchSummary> completed;
  BatchProcessor processor;
  processor.process("/no/such", "/no/such/", {}, 1, withLog, nullptr,
                    [&](const BatchSummary& summary) { completed.set_value(summary); });
  EXPECT_EQ(completed.get_future().get(), failureOfWhole("Input and output folders cannot be the same"));
}

TEST(BatchProcessor, ReportsASecondRunAsAFailureAndLeavesTheFirstAlone) {
  const BatchFolders folders({"a.dng"});
  Gate gate;
  std::promise<BatchSummary> first;
  std::promise<BatchSummary> second;
  BatchProcessor processor([&](const Path& source, const Path& destination, const CameraProfile&, RepairWorkspace&) {
    gate.pass();
    return pretendRepair(source, destination);
  });
  processor.process(folders.input, folders.output, {}, 1, withoutLog, nullptr,
                    [&](const BatchSummary& summary) { first.set_value(summary); });
  processor.process(folders.input, folders.output, {}, 1, withoutLog, nullptr,
                    [&](const BatchSummary& summary) { second.set_value(summary); });
  EXPECT_EQ(second.get_future().get(), failureOfWhole("This batch has been started already."));
  gate.open();
  EXPECT_EQ(first.get_future().get(), succeeded(1));
}

// Listed files.

TEST(BatchProcessor, TakesListedFilesInTheirOrderWhateverTheirNames) {
  const BatchFolders folders({"b.dng", "a.tif", ".hidden.dng", "other.dng"});
  Names order;
  BatchProcessor processor(pretending());
  const BatchSummary summary = processor.processFiles(
      {folders.input / "b.dng", folders.input / "a.tif", folders.input / ".hidden.dng"},
      {.outputFolder = folders.output, .options = withLog, .progress = [&](const BatchProgress& progress) {
         order.push_back(progress.currentFilename);
       }});
  EXPECT_EQ(summary.total, 3);
  EXPECT_EQ(summary.succeeded, 3);
  EXPECT_THAT(order, ElementsAre("b.dng", "a.tif", ".hidden.dng"));
  EXPECT_THAT(lines(readText(*summary.logURL)), SizeIs(4));
}

TEST(BatchProcessor, RefusesAListedFileThatLiesInTheOutputFolder) {
  const BatchFolders folders({"a.dng"});
  BatchProcessor processor(pretending());
  EXPECT_EQ(processor.processFiles({folders.input / "a.dng"}, {.outputFolder = folders.input, .options = withLog}),
            failureOfWhole("Input and output folders cannot be the same"));
}

TEST(BatchProcessor, MakesNoFolderForListedFilesOfWhichNoneExists) {
  const BatchFolders folders;
  const Path missing = folders.input / "missing/a.dng";
  BatchProcessor processor(pretending());
  EXPECT_EQ(processor.processFiles({missing},
                                   {.outputFolder = folders.input / "missing/Tessaly Results", .options = withLog}),
            refusedSource("No such file or directory", ENOENT, missing));
  EXPECT_THAT(namesIn(folders.input), IsEmpty());
}

TEST(BatchProcessor, FailsOnlyTheListedFileThatIsMissing) {
  const BatchFolders folders({"a.dng"});
  BatchProcessor processor([](const Path& source, const Path& destination, const CameraProfile&, RepairWorkspace&) {
    if (!std::filesystem::exists(source)) throw std::system_error(ENOENT, std::generic_category());
    return pretendRepair(source, destination);
  });
  const BatchSummary summary = processor.processFiles({folders.input / "b.dng", folders.input / "a.dng"},
                                                      {.outputFolder = folders.output, .options = withoutLog});
  EXPECT_EQ(summary.succeeded, 1);
  EXPECT_EQ(summary.failures.at(0).filename, "b.dng");
}

}  // namespace
}  // namespace tessaly
