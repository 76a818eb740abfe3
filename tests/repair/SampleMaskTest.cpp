#include "repair/SampleMask.h"

#include <gtest/gtest.h>

#include <utility>

namespace tessaly::tests {
namespace {

TEST(SampleMask, IsEmptyAtFirst) {
  const SampleMask mask(100, 3);
  EXPECT_EQ(mask.count(), 0);
  EXPECT_TRUE(mask.runs().empty());
  EXPECT_FALSE(mask.contains(99, 2));
}

TEST(SampleMask, HoldsRunsThatEndAtBeforeAndBehindAWord) {
  for (const auto& [first, last] : {std::pair<std::int64_t, std::int64_t>{0, 62},
                                    {0, 63},
                                    {0, 64},
                                    {63, 63},
                                    {63, 64},
                                    {64, 127},
                                    {1, 199},
                                    {199, 199}}) {
    SampleMask mask(200, 2);
    mask.add(1, first, last);
    EXPECT_EQ(mask.count(), last - first + 1);
    EXPECT_EQ(mask.runs(), (std::vector<SampleRun>{{1, first, last - first + 1}}));
    EXPECT_TRUE(mask.contains(first, 1));
    EXPECT_TRUE(mask.contains(last, 1));
    EXPECT_FALSE(mask.contains(first, 0));
    EXPECT_FALSE(first > 0 && mask.contains(first - 1, 1));
    EXPECT_FALSE(last < 199 && mask.contains(last + 1, 1));
  }
}

TEST(SampleMask, CountsASampleThatIsAddedTwiceOnce) {
  SampleMask mask(10, 1);
  mask.add(0, 2, 5);
  mask.add(0, 4, 7);
  EXPECT_EQ(mask.count(), 6);
  EXPECT_EQ(mask.runs(), (std::vector<SampleRun>{{0, 2, 6}}));
}

TEST(SampleMask, SubtractsAndUnites) {
  SampleMask mask(300, 3), other(300, 3);
  mask.add(0, 10, 200);
  mask.add(2, 5, 5);
  other.add(0, 60, 70);
  other.add(1, 290, 299);
  mask.subtract(other);
  EXPECT_EQ(mask.runs(), (std::vector<SampleRun>{{0, 10, 50}, {0, 71, 130}, {2, 5, 1}}));
  mask.unite(other);
  EXPECT_EQ(mask.runs(), (std::vector<SampleRun>{{0, 10, 191}, {1, 290, 10}, {2, 5, 1}}));
}

TEST(SampleMask, VisitsSamplesByRowThenColumn) {
  SampleMask mask(130, 2);
  mask.add(1, 3, 3);
  mask.add(0, 128, 129);
  mask.add(0, 0, 0);
  std::vector<std::pair<std::int64_t, std::int64_t>> visited;
  mask.forEach([&](std::int64_t x, std::int64_t y) { visited.emplace_back(x, y); });
  EXPECT_EQ(visited, (std::vector<std::pair<std::int64_t, std::int64_t>>{{0, 0}, {128, 0}, {129, 0}, {3, 1}}));
}

}  // namespace
}  // namespace tessaly::tests
