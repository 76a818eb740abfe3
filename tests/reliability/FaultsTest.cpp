// Disks, limits and other programs that get in the way of a run: each costs only the files that it hits, with a
// message that says why.
#include "batch/BatchFolders.h"
#include "batch/BatchProcessor.h"
#include "reliability/ChildProcess.h"
#include "reliability/RepairScene.h"
#include "support/FileBytes.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/mount.h>
#include <sys/resource.h>

#include <atomic>
#include <random>
#include <thread>

namespace tessaly::tests {
namespace {

using Path = std::filesystem::path;
using Status = BatchFileOutcome::Status;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Le;
using testing::SizeIs;

const BatchOptions withLog{ExistingOutputPolicy::skip, true};

struct Outcome {
  BatchSummary summary;
  std::map<std::string, BatchFileOutcome> outcomes;  ///< by the source's name
};

/// Called before a file is repaired, to get in its way.
using Disturbance = std::function<void(const Path& source, const Path& destination)>;

class Faults : public testing::Test {
 protected:
  [[nodiscard]] BatchOrder orderInto(const Path& into) const {
    return {.outputFolder = into, .profile = scene.profile(), .workers = 2, .options = withLog};
  }

  [[nodiscard]] Outcome run(const Path& into, const Disturbance& disturb = nullptr) const {
    Outcome result;
    std::mutex lock;
    BatchProcessor processor(
        [&](const Path& source, const Path& destination, const CameraProfile& profile, RepairWorkspace& workspace) {
          if (disturb) disturb(source, destination);
          return DNGWriter::repairCopy(source, destination, profile, workspace);
        });
    BatchOrder order = orderInto(into);
    order.file = [&](const BatchFileOutcome& outcome) {
      const std::lock_guard guard(lock);
      result.outcomes[outcome.source.filename()] = outcome;
    };
    result.summary = processor.processFolder(scene.input(), order);
    EXPECT_EQ(result.summary.total, static_cast<std::int64_t>(scene.count()));
    EXPECT_EQ(result.summary.succeeded + result.summary.failed + result.summary.skipped, result.summary.total);
    return result;
  }

  /// What the failed files say is the cause; every cause once.
  static std::set<std::string> causes(const Outcome& result) {
    std::set<std::string> texts;
    for (const auto& [name, outcome] : result.outcomes) {
      if (outcome.status == Status::failed) texts.insert(outcome.technical);
    }
    return texts;
  }

  /// The whole copies of the files that succeeded, and nothing else.
  void expectExactlyTheCopiesThatSucceeded(const Outcome& result, const Path& into) const {
    const OutputContents contents = contentsOf(into);
    expectOnlyWholeCopies(contents, scene);
    EXPECT_THAT(contents.temporaries, IsEmpty());
    EXPECT_EQ(static_cast<std::int64_t>(contents.copies.size()), result.summary.succeeded);
  }

  const TemporaryFolder folder;
  const RepairScene scene{folder.path(), SceneSize{6, 256, 192}};
  const Path output = folder / "output";
};

/// A file system of its own with room for so many bytes, as long as it lives.
class SmallDisk {
 public:
  SmallDisk(const Path& place, std::size_t bytes) : place_(place) {
    std::filesystem::create_directory(place);
    const std::string options = "size=" + std::to_string(bytes);
    mounted_ = ::mount("tmpfs", place.c_str(), "tmpfs", 0, options.c_str()) == 0;
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    if (mounted_) ::umount2(place_.c_str(), MNT_DETACH);
  }

  [[nodiscard]] bool isMounted() const { return mounted_; }

 private:
  Path place_;
  bool mounted_ = false;
};

TEST_F(Faults, AFullDiskFailsTheFilesThatHaveNoRoom) {
  const SmallDisk disk(folder / "disk", 350'000);  // room for three or four of six copies
  if (!disk.isMounted()) GTEST_SKIP() << "mounting is not permitted here";
  const Outcome full = run(folder / "disk/output");
  EXPECT_EQ(causes(full), std::set<std::string>{"Unable to read: No space left on device"});
  EXPECT_THAT(full.summary.failures.front().message,
              HasSubstr("“" + (folder / "disk/output").string() + "”: no space left"));
  EXPECT_GE(full.summary.succeeded, 2);
  expectExactlyTheCopiesThatSucceeded(full, folder / "disk/output");
  scene.expectOriginalsUntouched();
}

TEST_F(Faults, ADiskWithoutRoomForTheLogCostsTheLogOnly) {
  const SmallDisk disk(folder / "disk", 2'000'000);
  if (!disk.isMounted()) GTEST_SKIP() << "mounting is not permitted here";
  std::atomic<int> repaired = 0;
  BatchProcessor processor(
      [&](const Path& source, const Path& destination, const CameraProfile& profile, RepairWorkspace& workspace) {
        const DNGWriteResult result = DNGWriter::repairCopy(source, destination, profile, workspace);
        if (++repaired < 6) return result;
        std::ofstream filler(folder / "disk/filler", std::ios::binary);
        filler << std::string(2'000'000, 'x');
        return result;
      });
  const BatchSummary summary = processor.processFolder(
      scene.input(), {.outputFolder = folder / "disk/output", .profile = scene.profile(), .options = withLog});
  EXPECT_EQ(summary.succeeded, 6);
  EXPECT_FALSE(summary.logURL);
  EXPECT_EQ(summary.logError, "No space left on device");
  EXPECT_THAT(contentsOf(folder / "disk/output").temporaries, IsEmpty());
  EXPECT_THAT(contentsOf(folder / "disk/output").logs, IsEmpty());
}

TEST_F(Faults, AFileSizeLimitFailsTheFilesAboveItAndDoesNotEndTheProgram) {
  // 12-bit copies are below it, 16-bit copies above.
  constexpr rlim_t limit = 90'000;
  ChildProcess process({TESSALY_BATCH_RUNNER, scene.input(), output, scene.profileFile(), "2", "skip"},
                       folder / "summary.json", [] {
                         const rlimit fileSize{limit, limit};
                         ::setrlimit(RLIMIT_FSIZE, &fileSize);
                       });
  EXPECT_EQ(process.wait(), 1);
  const auto summary = nlohmann::json::parse(readText(folder / "summary.json"));
  EXPECT_EQ(summary["succeeded"], 2);
  EXPECT_EQ(summary["failed"], 4);
  EXPECT_FALSE(summary.contains("logError"));
  const OutputContents contents = contentsOf(output);
  expectOnlyWholeCopies(contents, scene);
  EXPECT_THAT(contents.copies, SizeIs(2));
  EXPECT_THAT(contents.temporaries, IsEmpty());
}

TEST_F(Faults, AReadOnlyFolderFailsEveryFileAndTheLog) {
  using std::filesystem::perms;
  std::filesystem::create_directory(output);
  std::filesystem::permissions(output, perms::owner_all | perms::others_read | perms::others_exec);
  for (const Path& way : {folder.path(), scene.input()})
    std::filesystem::permissions(way, perms::others_read | perms::others_exec, std::filesystem::perm_options::add);
  EXPECT_EQ(asOrdinaryUser([&] {
              const Outcome refused = run(output);
              const bool allFailed = refused.summary.failed == 6 && refused.summary.logError == "Permission denied";
              return allFailed && causes(refused) == std::set<std::string>{"Unable to read: Permission denied"} ? 0 : 1;
            }),
            0);
  EXPECT_THAT(namesIn(output), IsEmpty());
}

TEST_F(Faults, ASourceThatMayNotBeReadFailsAlone) {
  const Path locked = scene.input() / "L1001.dng";
  std::filesystem::permissions(locked, std::filesystem::perms::none);
  for (const Path& way : {folder.path(), scene.input()})
    std::filesystem::permissions(way, std::filesystem::perms::all);
  EXPECT_EQ(asOrdinaryUser([&] {
              const Outcome refused = run(output);
              const bool oneFailed =
                  refused.summary.failed == 1 && refused.outcomes.at("L1001.dng").status == Status::failed;
              return oneFailed && causes(refused) == std::set<std::string>{"Unable to read: Permission denied"} ? 0 : 1;
            }),
            0);
}

TEST_F(Faults, ASourceThatVanishesFailsAlone) {
  const Outcome disturbed = run(output, [](const Path& source, const Path&) {
    if (source.filename() == "L1003.dng") std::filesystem::remove(source);
  });
  EXPECT_EQ(disturbed.summary.succeeded, 5);
  EXPECT_EQ(disturbed.outcomes.at("L1003.dng").technical, "Unable to read: No such file or directory");
  EXPECT_EQ(disturbed.outcomes.at("L1003.dng").message.find("L1003.dng: Tessaly couldn't open this file."), 0U);
  expectExactlyTheCopiesThatSucceeded(disturbed, output);
}

TEST_F(Faults, ASourceThatIsTruncatedFailsAlone) {
  for (const std::uintmax_t length : {0U, 7U, 100U, 40'000U, 98'000U}) {
    const Path into = folder / ("output" + std::to_string(length));
    const Outcome disturbed = run(into, [&](const Path& source, const Path&) {
      if (source.filename() == "L1003.dng") std::filesystem::resize_file(source, length);
    });
    EXPECT_EQ(disturbed.summary.succeeded, 5) << length;
    EXPECT_EQ(disturbed.outcomes.at("L1003.dng").status, Status::failed) << length;
    expectExactlyTheCopiesThatSucceeded(disturbed, into);
    scene.restore();
  }
}

TEST_F(Faults, ASourceThatBecomesAFolderOrAFIFOFailsAloneAndBlocksNothing) {
  const Outcome disturbed = run(output, [](const Path& source, const Path&) {
    if (source.filename() == "L1002.dng") {
      std::filesystem::remove(source);
      std::filesystem::create_directory(source);
    }
    if (source.filename() == "L1004.dng") {
      std::filesystem::remove(source);
      ::mkfifo(source.c_str(), 0600);
    }
  });
  EXPECT_EQ(disturbed.summary.succeeded, 4);
  EXPECT_EQ(causes(disturbed), std::set<std::string>{"Invalid DNG structure: DNG size limit (2 GB)"});
  expectExactlyTheCopiesThatSucceeded(disturbed, output);
}

TEST_F(Faults, ASourceThatIsReplacedByAnotherCamerasFileFailsAlone) {
  const Outcome disturbed = run(output, [](const Path& source, const Path&) {
    if (source.filename() == "L1003.dng") tools::DNGBuilder().size(64, 48).write(source);
  });
  EXPECT_EQ(disturbed.summary.succeeded, 5);
  EXPECT_EQ(disturbed.outcomes.at("L1003.dng").technical.find("Camera profile mismatch: "), 0U);
  expectExactlyTheCopiesThatSucceeded(disturbed, output);
}

TEST_F(Faults, ADestinationThatAppearsStaysAsItIs) {
  const Outcome disturbed = run(output, [](const Path&, const Path& destination) {
    if (destination.filename() == "L1003.dng") writeText(destination, "somebody else's");
    if (destination.filename() == "L1004.dng") std::filesystem::create_symlink("nowhere", destination);
  });
  EXPECT_EQ(disturbed.summary.succeeded, 4);
  EXPECT_EQ(disturbed.summary.skipped, 2);
  EXPECT_EQ(readText(output / "L1003.dng"), "somebody else's");
  EXPECT_TRUE(std::filesystem::is_symlink(output / "L1004.dng"));
  EXPECT_THAT(namesIn(output), SizeIs(7)) << "six names and the log";
}

TEST_F(Faults, AnOutputFolderThatVanishesIsMadeAgainOrFailsItsFiles) {
  const Outcome disturbed = run(output, [&](const Path& source, const Path&) {
    if (source.filename() == "L1003.dng") std::filesystem::remove_all(output);
  });
  const OutputContents contents = contentsOf(output);
  EXPECT_LE(static_cast<std::int64_t>(contents.copies.size()), disturbed.summary.succeeded);
  for (const auto& [name, bytes] : contents.copies)
    EXPECT_EQ(bytes, scene.copies().at(name)) << name;
  scene.expectOriginalsUntouched();
}

/// Does something to the sources again and again until it goes away.
class Disturber {
 public:
  explicit Disturber(std::function<void(std::mt19937&)> action)
      : thread_([action = std::move(action)](const std::stop_token& stop) {
          std::mt19937 random(7);
          while (!stop.stop_requested())
            action(random);
        }) {}

 private:
  std::jthread thread_;
};

TEST_F(Faults, SourcesThatChangeWhileTheyAreReadGiveWholeCopiesOrNone) {
  const Path side = folder / "side.dng";
  std::int64_t succeeded = 0;
  std::int64_t failed = 0;
  // On, where the machine lets only one of both happen.
  for (int round = 0; round < 25 || succeeded == 0 || failed == 0; ++round) {
    const Path into = folder / ("output" + std::to_string(round));
    Outcome disturbed;
    {
      const Disturber disturber([&](std::mt19937& random) {
        const std::string name = "L100" + std::to_string(random() % 6) + ".dng";
        std::error_code ignored;
        switch (random() % 3) {
          case 0:
            std::filesystem::remove(scene.input() / name, ignored);
            break;
          case 1:
            std::filesystem::resize_file(scene.input() / name, random() % 100'000, ignored);
            break;
          default:
            // A whole new file in its place, as a program that saves does it.
            tools::writeBytes(side, scene.originals().at(name));
            std::filesystem::rename(side, scene.input() / name, ignored);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2'000));
      });
      BatchProcessor processor;
      std::vector<Path> files;
      for (const auto& [name, bytes] : scene.originals())
        files.push_back(scene.input() / name);
      disturbed.summary = processor.processFiles(files, orderInto(into));
    }
    if (disturbed.summary.total != 0) expectExactlyTheCopiesThatSucceeded(disturbed, into);
    succeeded += disturbed.summary.succeeded;
    failed += disturbed.summary.failed;
    scene.restore();
  }
  RecordProperty("succeeded", std::to_string(succeeded));
  RecordProperty("failed", std::to_string(failed));
}

}  // namespace
}  // namespace tessaly::tests
