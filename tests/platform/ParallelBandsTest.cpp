#include "platform/ParallelBands.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace tessaly {
namespace {

using testing::Each;

// How often each row was worked on.
std::vector<int> visits(std::int64_t rows, int threads) {
  std::vector<int> counts(static_cast<std::size_t>(rows));
  forEachBand(rows, threads, [&](const RowBand& band) {
    for (std::int64_t row = band.first; row < band.last; ++row)
      ++counts[static_cast<std::size_t>(row)];
  });
  return counts;
}

TEST(ParallelBands, WorksOnEveryRowOnce) {
  for (const std::int64_t rows : {1, 2, 3, 7, 8, 100}) {
    for (const int threads : {1, 2, 3, 8, 200})
      EXPECT_THAT(visits(rows, threads), Each(1)) << rows << " rows, " << threads << " threads";
  }
}

TEST(ParallelBands, MakesOneBandAThreadButNoneWithoutARow) {
  EXPECT_EQ(bandCount(100, 4), 4);
  EXPECT_EQ(bandCount(3, 4), 3);
  EXPECT_EQ(bandCount(0, 4), 0);
  EXPECT_EQ(bandCount(100, 0), 1);
}

TEST(ParallelBands, DoesNothingWithoutRows) {
  forEachBand(0, 4, [](const RowBand&) { FAIL() << "no band expected"; });
}

TEST(ParallelBands, NumbersTheBandsFromTopToBottom) {
  std::mutex lock;
  std::set<std::tuple<std::int64_t, std::int64_t, std::int64_t>> bands;
  forEachBand(10, 3, [&](const RowBand& band) {
    const std::lock_guard guard(lock);
    bands.emplace(band.index, band.first, band.last);
  });
  const std::set<std::tuple<std::int64_t, std::int64_t, std::int64_t>> expected{{0, 0, 3}, {1, 3, 6}, {2, 6, 10}};
  EXPECT_EQ(bands, expected);
}

TEST(ParallelBands, DoesTheFirstBandOnTheThreadOfTheCaller) {
  forEachBand(4, 2, [caller = std::this_thread::get_id()](const RowBand& band) {
    EXPECT_EQ(std::this_thread::get_id() == caller, band.index == 0);
  });
}

TEST(ParallelBands, ThrowsTheErrorOfTheFirstFailedBandAfterAllHaveEnded) {
  std::atomic<int> ended = 0;
  try {
    forEachBand(4, 4, [&](const RowBand& band) {
      ++ended;
      if (band.index == 1 || band.index == 3) throw std::runtime_error("band " + std::to_string(band.index));
    });
    FAIL() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "band 1");
  }
  EXPECT_EQ(ended, 4);
}

TEST(ParallelBands, FindsAtLeastOneThread) {
  EXPECT_GE(availableThreads(), 1);
}

}  // namespace
}  // namespace tessaly
