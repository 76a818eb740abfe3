// Runs that are ended with SIGKILL at a random moment: what is left must be originals as they were, whole copies and
// hidden temporary files, and the next run must be able to go on from there.
#include "reliability/ChildProcess.h"
#include "reliability/RepairScene.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
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

  const TemporaryFolder folder;
  const RepairScene scene{folder.path(), SceneSize{}};
};

TEST_F(KilledRun, LeavesOriginalsUntouchedAndOnlyWholeCopiesUnderFinalNames) {
  const auto longest = wholeRun().count();
  std::mt19937 random(20261115);
  std::uniform_int_distribution<std::int64_t> delay(0, longest);
  std::size_t copies = 0;
  std::size_t temporaries = 0;
  int rounds = 0;
  for (const Clock::time_point end = Clock::now() + enough; rounds < mostRounds && Clock::now() < end; ++rounds) {
    const std::filesystem::path output = folder / ("output" + std::to_string(rounds));
    const OutputContents left = killedAfter(microseconds(delay(random)), output);
    expectOnlyWholeCopies(left, scene);
    EXPECT_LE(left.temporaries.size(), 4U) << "one a worker, and one for the log";
    copies += left.copies.size();
    temporaries += left.temporaries.size();
    std::filesystem::remove_all(output);
  }
  scene.expectOriginalsUntouched();
  // Without these the moments were badly chosen and the rounds proved nothing.
  EXPECT_GT(copies, 0U);
  EXPECT_LT(copies, static_cast<std::size_t>(rounds) * scene.count());
  EXPECT_GT(temporaries, 0U);
  RecordProperty("rounds", rounds);
  RecordProperty("wholeCopiesLeft", static_cast<int>(copies));
  RecordProperty("temporaryFilesLeft", static_cast<int>(temporaries));
}

TEST_F(KilledRun, LeavesTemporaryFilesThatARunOnAnotherDayRemoves) {
  const auto longest = wholeRun().count();
  std::mt19937 random(7);
  std::uniform_int_distribution<std::int64_t> delay(0, longest);
  const std::filesystem::path output = folder / "output";
  std::vector<std::string> left;
  for (int round = 0; round < mostRounds && left.empty(); ++round) {
    std::filesystem::remove_all(output);
    left = killedAfter(microseconds(delay(random)), output).temporaries;
  }
  ASSERT_FALSE(left.empty()) << "the moments were badly chosen";
  for (const std::string& name : left)
    last_write_time(output / name, std::filesystem::file_time_type::clock::now() - std::chrono::hours(25));
  EXPECT_EQ(ChildProcess(command(output), folder / "summary.json").wait(), 0);
  EXPECT_TRUE(contentsOf(output).temporaries.empty()) << "the lock went with the process";
}

TEST_F(KilledRun, IsContinuedByTheNextOne) {
  const auto half = wholeRun() / 2;
  const std::filesystem::path output = folder / "output";
  static_cast<void>(killedAfter(half, output));
  EXPECT_EQ(ChildProcess(command(output), folder / "summary.json").wait(), 0);
  const OutputContents contents = contentsOf(output);
  expectOnlyWholeCopies(contents, scene);
  EXPECT_EQ(contents.copies.size(), scene.count());
  EXPECT_EQ(contents.logs.size(), 1U);
  scene.expectOriginalsUntouched();
}

}  // namespace
}  // namespace tessaly::tests
