// Requests to stop at random moments: the files in progress finish, nothing is left half done, and the summary tells of
// exactly what is there.
#include "batch/BatchProcessor.h"
#include "reliability/RepairScene.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <random>
#include <thread>

namespace tessaly::tests {
namespace {

constexpr int stopRequests = 60;

class StopRequests : public testing::Test {
 protected:
  void expectWhatIsThere(const BatchSummary& summary, const std::filesystem::path& output) const {
    const OutputContents contents = contentsOf(output);
    expectOnlyWholeCopies({contents.copies, {}, {}, contents.others}, scene);
    EXPECT_EQ(contents.temporaries, std::vector<std::string>{});
    EXPECT_EQ(static_cast<std::int64_t>(contents.copies.size()), summary.succeeded);
    EXPECT_EQ(summary.failed + summary.skipped, 0);
    EXPECT_EQ(summary.total, static_cast<std::int64_t>(scene.count()));
    ASSERT_EQ(contents.logs.size(), 1U);
    expectWholeLog(contents.logs.front(), static_cast<std::size_t>(summary.succeeded));
  }

  const TemporaryFolder folder;
  const RepairScene scene{folder.path(), SceneSize{12, 128, 96}};
};

TEST_F(StopRequests, LeaveWholeCopiesAndATrueSummaryWheneverTheyCome) {
  std::mt19937 random(20261122);
  int early = 0;
  for (int round = 0; round < stopRequests; ++round) {
    const std::filesystem::path output = folder / ("output" + std::to_string(round));
    const auto wanted = static_cast<std::int64_t>(random() % (scene.count() + 1));
    const auto delay = std::chrono::microseconds(random() % 500);
    std::atomic<std::int64_t> finished = 0;
    std::atomic<bool> hasEnded = false;
    BatchProcessor processor;
    BatchOrder order{.outputFolder = output,
                     .profile = scene.profile(),
                     .workers = 1 + static_cast<int>(random() % 4),
                     .options = {ExistingOutputPolicy::skip, true}};
    order.file = [&](const BatchFileOutcome&) { ++finished; };
    BatchSummary summary;
    {
      // From another thread, so that it comes in the middle of whatever the workers are doing.
      const std::jthread stopper([&] {
        while (finished < wanted && !hasEnded)
          std::this_thread::yield();
        std::this_thread::sleep_for(delay);
        processor.cancel();
      });
      summary = processor.processFolder(scene.input(), order);
      hasEnded = true;
    }
    early += summary.cancelled && summary.succeeded < summary.total ? 1 : 0;
    expectWhatIsThere(summary, output);
    std::filesystem::remove_all(output);
  }
  EXPECT_GT(early, 0) << "no request came in time";
  scene.expectOriginalsUntouched();
}

}  // namespace
}  // namespace tessaly::tests
