#include "dng/tiff/ByteRangeSet.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace tessaly::tests {
namespace {

TEST(ByteRangeSet, IsEmptyAtFirst) {
  const ByteRangeSet set;
  EXPECT_EQ(set.endOfStretch(5), 5);
  EXPECT_EQ(set.beginOfStretch(5), 5);
}

TEST(ByteRangeSet, KnowsTheEndsOfAStretch) {
  ByteRangeSet set;
  set.insert(10, 20);
  EXPECT_EQ(set.endOfStretch(10), 20);
  EXPECT_EQ(set.endOfStretch(15), 20);
  EXPECT_EQ(set.endOfStretch(20), 20);
  EXPECT_EQ(set.endOfStretch(9), 9);
  EXPECT_EQ(set.beginOfStretch(20), 10);
  EXPECT_EQ(set.beginOfStretch(15), 10);
  EXPECT_EQ(set.beginOfStretch(10), 10);
  EXPECT_EQ(set.beginOfStretch(21), 21);
}

TEST(ByteRangeSet, JoinsRangesThatTouch) {
  ByteRangeSet set;
  set.insert(0, 4);
  set.insert(8, 12);
  set.insert(4, 8);
  EXPECT_EQ(set.endOfStretch(0), 12);
  EXPECT_EQ(set.beginOfStretch(12), 0);
}

TEST(ByteRangeSet, IgnoresAnEmptyRange) {
  ByteRangeSet set;
  set.insert(7, 7);
  EXPECT_EQ(set.endOfStretch(7), 7);
  EXPECT_EQ(set.beginOfStretch(7), 7);
}

std::int64_t stretchEnd(const std::set<std::int64_t>& positions, std::int64_t begin) {
  while (positions.contains(begin))
    ++begin;
  return begin;
}

std::int64_t stretchBegin(const std::set<std::int64_t>& positions, std::int64_t end) {
  while (positions.contains(end - 1))
    --end;
  return end;
}

TEST(ByteRangeSet, AgreesWithASetOfPositions) {
  std::mt19937 random(1);
  for (int round = 0; round < 200; ++round) {
    ByteRangeSet set;
    std::set<std::int64_t> positions;
    for (int insertion = 0; insertion < 12; ++insertion) {
      const auto begin = static_cast<std::int64_t>(random() % 60);
      const auto end = begin + static_cast<std::int64_t>(random() % 9);
      set.insert(begin, end);
      for (std::int64_t i = begin; i < end; ++i)
        positions.insert(i);
    }
    for (std::int64_t at = 0; at < 75; ++at) {
      ASSERT_EQ(set.endOfStretch(at), stretchEnd(positions, at));
      ASSERT_EQ(set.beginOfStretch(at), stretchBegin(positions, at));
    }
  }
}

}  // namespace
}  // namespace tessaly::tests
