#include "platform/WorkQueue.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <barrier>
#include <chrono>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace tessaly {
namespace {

TEST(WorkQueue, RunsEverythingBeforeWaitReturns) {
  std::atomic<int> done = 0;
  WorkQueue queue("test", 3);
  for (int count = 0; count < 200; ++count)
    queue.submit([&](std::size_t) { ++done; });
  queue.wait();
  EXPECT_EQ(done, 200);
}

TEST(WorkQueue, CanBeUsedAgainAfterWaiting) {
  std::atomic<int> done = 0;
  WorkQueue queue("test", 2);
  for (int round = 1; round <= 3; ++round) {
    queue.submit([&](std::size_t) { ++done; });
    queue.wait();
    EXPECT_EQ(done, round);
  }
}

TEST(WorkQueue, WaitsForNothingWhenNothingWasSubmitted) {
  std::atomic<bool> hasRun = false;
  WorkQueue queue("test", 4);
  queue.wait();
  queue.submit([&](std::size_t) { hasRun = true; });
  queue.wait();
  EXPECT_TRUE(hasRun) << "the wait for nothing left the queue usable";
}

TEST(WorkQueue, RunsAsManyAtOnceAsAskedAndNoMore) {
  std::barrier meeting(3);  // three operations go on only when all three are running
  std::atomic<int> running = 0;
  std::atomic<int> most = 0;
  WorkQueue queue("test", 3);
  for (int count = 0; count < 9; ++count) {
    queue.submit([&](std::size_t) {
      const int now = ++running;
      for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
      }
      meeting.arrive_and_wait();
      --running;
    });
  }
  queue.wait();
  EXPECT_EQ(most, 3);
}

TEST(WorkQueue, StartsOperationsInTheOrderOfSubmission) {
  std::vector<int> order;
  WorkQueue queue("test", 1);
  for (int number = 0; number < 50; ++number)
    queue.submit([&order, number](std::size_t) { order.push_back(number); });
  queue.wait();
  ASSERT_EQ(order.size(), 50U);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(WorkQueue, TellsEachOperationAWorkerThatNoOtherUsesNow) {
  std::vector<std::atomic<bool>> busy(4);
  std::atomic<int> clashes = 0;
  WorkQueue queue("test", 4);
  for (int count = 0; count < 400; ++count) {
    queue.submit([&](std::size_t worker) {
      if (worker >= busy.size() || busy[worker].exchange(true)) {
        ++clashes;
      } else {
        std::this_thread::yield();
        busy[worker] = false;
      }
    });
  }
  queue.wait();
  EXPECT_EQ(clashes, 0);
}

TEST(WorkQueue, GoesOnAfterAnOperationThatThrows) {
  std::atomic<int> done = 0;
  WorkQueue queue("test", 2);
  for (int count = 0; count < 20; ++count) {
    queue.submit([](std::size_t) { throw std::runtime_error("no"); });
    queue.submit([](std::size_t) { throw 7; });
    queue.submit([&](std::size_t) { ++done; });
  }
  queue.wait();
  EXPECT_EQ(done, 20);
}

TEST(WorkQueue, ReleasesWhatAnOperationHeldBeforeWaitReturns) {
  const auto held = std::make_shared<int>(1);
  WorkQueue queue("test", 2);
  for (int count = 0; count < 50; ++count)
    queue.submit([held](std::size_t) {});
  queue.wait();
  EXPECT_EQ(held.use_count(), 1);
}

TEST(WorkQueue, FinishesWhatWasSubmittedWhenItGoesAway) {
  std::atomic<int> done = 0;
  {
    WorkQueue queue("test", 2);
    for (int count = 0; count < 20; ++count)
      queue.submit([&](std::size_t) { ++done; });
  }
  EXPECT_EQ(done, 20);
}

TEST(WorkQueue, RunsOperationsItselfWhereThereIsNoThread) {
  const std::thread::id own = std::this_thread::get_id();
  std::set<std::thread::id> threads;
  WorkQueue queue("test", 0);
  for (int count = 0; count < 3; ++count)
    queue.submit([&](std::size_t worker) {
      EXPECT_EQ(worker, 0U);
      threads.insert(std::this_thread::get_id());
    });
  queue.wait();
  EXPECT_EQ(threads, std::set<std::thread::id>{own});
}

TEST(WorkQueue, NamesItsThreads) {
  std::string name(32, '\0');
  WorkQueue queue("Tessaly DNG Batch", 1);
  queue.submit([&](std::size_t) { pthread_getname_np(pthread_self(), name.data(), name.size()); });
  queue.wait();
  EXPECT_EQ(std::string(name.c_str()), "Tessaly DNG Bat") << "as much as the system shows";
}

}  // namespace
}  // namespace tessaly
