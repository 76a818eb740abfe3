// Runs that are ended with SIGKILL, before every flush and at random moments: what is left must be originals as they
// were, whole copies and hidden temporary files, and the next run must be able to go on from there.
#include "reliability/ChildProcess.h"
#include "reliability/RepairScene.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <optional>
#include <random>
#include <string>
#include <thread>

namespace tessaly::tests {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

constexpr int mostRounds = 300;
constexpr std::chrono::seconds enough(12);  // where a sanitizer makes every round slow

class KilledRun : public testing::Test {
 protected:
  [[nodiscard]] std::vector<std::string> command(const std::filesystem::path& output) const {
    return {TESSALY_BATCH_RUNNER, scene.input(), output, scene.profileFile(), "3", "skip"};
  }

  /// How long a whole run takes.
  [[nodiscard]] microseconds wholeRun() const {
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(ChildProcess(command(folder / "whole"), folder / "summary.json").wait(), 0);
    expectOnlyWholeCopies(contentsOf(folder / "whole"), scene);
    return std::chrono::duration_cast<microseconds>(Clock::now() - start);
  }

  [[nodiscard]] OutputContents killedAfter(microseconds delay, const std::filesystem::path& output) const {
    ChildProcess process(command(output), folder / "summary.json");
    std::this_thread::sleep_for(delay);
    process.kill();
    static_cast<void>(process.wait());
    return contentsOf(output);
  }

  /// What a run leaves that is killed where it is about to flush for this time, 1 for the first. Nothing when it does
  /// not flush so often.
  [[nodiscard]] std::optional<OutputContents> killedAt(int flush, const std::filesystem::path& output) const {
    const std::filesystem::path gate = folder / "gate";
    std::filesystem::remove_all(gate);
    std::filesystem::create_directory(gate);
    ChildProcess process(command(output), folder / "summary.json", [&] {
      ::setenv("TESSALY_GATE", gate.c_str(), 1);
      ::setenv("TESSALY_GATE_CALL", std::to_string(flush).c_str(), 1);
    });
    while (!std::filesystem::exists(gate / "reached")) {
      if (process.hasEnded()) return std::nullopt;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    process.kill();
    static_cast<void>(process.wait());
    return contentsOf(output);
  }

  const TemporaryFolder folder;
  const RepairScene scene{folder.path(), SceneSize{}};
};

TEST_F(KilledRun, LeavesOriginalsUntouchedAndOnlyWholeCopiesBeforeEveryFlush) {
  std::size_t copies = 0;
  std::size_t temporaries = 0;
  int flush = 0;
  while (const auto left = killedAt(++flush, folder / "output")) {
    expectOnlyWholeCopies(*left, scene);
    EXPECT_LE(left->temporaries.size(), 4U) << "one a worker, and one for the log";
    copies += left->copies.size();
    temporaries += left->temporaries.size();
    std::filesystem::remove_all(folder / "output");
  }
  EXPECT_GT(flush, static_cast<int>(scene.count()));
  EXPECT_GT(copies, 0U);
  EXPECT_GT(temporaries, 0U);
  scene.expectOriginalsUntouched();
}

TEST_F(KilledRun, LeavesOriginalsUntouchedAndOnlyWholeCopiesAtRandomMoments) {
  const auto longest = wholeRun().count();
  std::mt19937 random(20261115);
  std::uniform_int_distribution<std::int64_t> delay(0, longest);
  int rounds = 0;
  for (const Clock::time_point end = Clock::now() + enough; rounds < mostRounds && Clock::now() < end; ++rounds) {
    const std::filesystem::path output = folder / ("output" + std::to_string(rounds));
    const OutputContents left = killedAfter(microseconds(delay(random)), output);
    expectOnlyWholeCopies(left, scene);
    EXPECT_LE(left.temporaries.size(), 4U) << "one a worker, and one for the log";
    std::filesystem::remove_all(output);
  }
  scene.expectOriginalsUntouched();
  RecordProperty("rounds", rounds);
}

TEST_F(KilledRun, LeavesTemporaryFilesThatARunOnAnotherDayRemoves) {
  const std::filesystem::path output = folder / "output";
  std::vector<std::string> left;
  for (int flush = 1; left.empty(); ++flush) {
    std::filesystem::remove_all(output);
    const auto contents = killedAt(flush, output);
    ASSERT_TRUE(contents) << "no new file was flushed";
    left = contents->temporaries;
  }
  for (const std::string& name : left)
    last_write_time(output / name, std::filesystem::file_time_type::clock::now() - std::chrono::hours(25));
  EXPECT_EQ(ChildProcess(command(output), folder / "summary.json").wait(), 0);
  EXPECT_TRUE(contentsOf(output).temporaries.empty()) << "the lock went with the process";
}

TEST_F(KilledRun, IsContinuedByTheNextOne) {
  const std::filesystem::path output = folder / "output";
  ASSERT_TRUE(killedAt(static_cast<int>(scene.count()), output));
  EXPECT_EQ(ChildProcess(command(output), folder / "summary.json").wait(), 0);
  const OutputContents contents = contentsOf(output);
  expectOnlyWholeCopies(contents, scene);
  EXPECT_EQ(contents.copies.size(), scene.count());
  EXPECT_EQ(contents.logs.size(), 1U);
  scene.expectOriginalsUntouched();
}

}  // namespace
}  // namespace tessaly::tests
