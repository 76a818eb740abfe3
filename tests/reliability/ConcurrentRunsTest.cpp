// Runs that write into one folder at the same time: every file under a final name is one run's whole copy.
#include "batch/BatchProcessor.h"
#include "batch/SourceFiles.h"
#include "reliability/ChildProcess.h"
#include "reliability/RepairScene.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <future>

namespace tessaly::tests {
namespace {

using testing::IsEmpty;

/// TESSALY_ROUNDS asks for more.
int roundsAsked() {
  const char* const wanted = ::getenv("TESSALY_ROUNDS");
  return wanted ? ::atoi(wanted) : 10;
}

const int roundsOfTwo = roundsAsked();
constexpr SceneSize raceSize{10, 256, 192};

class ConcurrentRuns : public testing::Test {
 protected:
  // ICU sets up its tables at their first use. It does so safely, but ThreadSanitizer cannot see how inside a library
  // that is not instrumented; so the first use is here, before there are threads.
  void SetUp() override { EXPECT_EQ(sourceFiles(first.input()).size(), first.count()); }

  [[nodiscard]] BatchSummary run(const RepairScene& scene, ExistingOutputPolicy policy) const {
    BatchProcessor processor;
    return processor.processFolder(
        scene.input(), {.outputFolder = output, .profile = scene.profile(), .workers = 2, .options = {policy, false}});
  }

  [[nodiscard]] std::pair<BatchSummary, BatchSummary> runBoth(ExistingOutputPolicy policy) const {
    auto other = std::async(std::launch::async, [&] { return run(second, policy); });
    BatchSummary own = run(first, policy);
    return {own, other.get()};
  }

  [[nodiscard]] bool isWholeCopy(const std::string& sourceName, const Bytes& bytes) const {
    return bytes == first.copies().at(sourceName) || bytes == second.copies().at(sourceName);
  }

  const TemporaryFolder folder;
  const std::filesystem::path output = folder / "output";
  const RepairScene first{folder / "first", raceSize, 1};
  const RepairScene second{folder / "second", raceSize, 2};
};

TEST_F(ConcurrentRuns, NeverMixOrOverwriteFilesOfOneName) {
  for (int round = 0; round < roundsOfTwo; ++round) {
    std::filesystem::remove_all(output);
    const auto [a, b] = runBoth(ExistingOutputPolicy::skip);
    const OutputContents contents = contentsOf(output);
    EXPECT_EQ(contents.copies.size(), first.count());
    EXPECT_EQ(a.succeeded + b.succeeded, static_cast<std::int64_t>(first.count()))
        << "each name was won by exactly one run";
    EXPECT_EQ(a.skipped + b.skipped, static_cast<std::int64_t>(first.count())) << "and skipped by the other";
    for (const auto& [name, bytes] : contents.copies)
      EXPECT_TRUE(isWholeCopy(name, bytes)) << name;
    EXPECT_THAT(contents.temporaries, IsEmpty());
    EXPECT_THAT(contents.others, IsEmpty());
  }
}

TEST_F(ConcurrentRuns, KeepEarlierCopiesWhenTheyNumberTheirs) {
  for (int round = 0; round < roundsOfTwo; ++round) {
    std::filesystem::remove_all(output);
    static_cast<void>(run(first, ExistingOutputPolicy::skip));
    const auto [a, b] = runBoth(ExistingOutputPolicy::numberedCopy);
    const OutputContents contents = contentsOf(output);
    EXPECT_EQ(static_cast<std::int64_t>(contents.copies.size()),
              static_cast<std::int64_t>(first.count()) + a.succeeded + b.succeeded);
    for (const auto& [name, bytes] : first.copies())
      EXPECT_EQ(contents.copies.at(name), bytes) << name;
    for (const auto& [name, bytes] : contents.copies)
      EXPECT_TRUE(isWholeCopy(name.substr(0, 5) + ".dng", bytes)) << name;
  }
}

TEST_F(ConcurrentRuns, OfTwoProgramsNeverMixOrOverwriteEither) {
  const auto start = [&](const RepairScene& scene, const char* summary) {
    return std::make_unique<ChildProcess>(
        std::vector<std::string>{TESSALY_BATCH_RUNNER, scene.input(), output, scene.profileFile(), "4", "skip"},
        folder / summary);
  };
  for (int round = 0; round < roundsOfTwo; ++round) {
    std::filesystem::remove_all(output);
    const auto a = start(first, "a.json");
    const auto b = start(second, "b.json");
    EXPECT_EQ(a->wait(), 0);
    EXPECT_EQ(b->wait(), 0);
    const OutputContents contents = contentsOf(output);
    EXPECT_EQ(contents.copies.size(), first.count());
    for (const auto& [name, bytes] : contents.copies)
      EXPECT_TRUE(isWholeCopy(name, bytes)) << name;
    EXPECT_THAT(contents.temporaries, IsEmpty());
    for (const std::filesystem::path& log : contents.logs)
      expectWholeLog(log, first.count());
  }
  first.expectOriginalsUntouched();
  second.expectOriginalsUntouched();
}

}  // namespace
}  // namespace tessaly::tests
