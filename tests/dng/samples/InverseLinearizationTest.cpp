#include "dng/DNGError.h"
#include "dng/samples/InverseLinearization.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace tessaly {
namespace {

using Table = std::vector<std::uint16_t>;

// The rule itself, word by word: of all codes the first whose value is nearest.
std::uint16_t nearestCode(const Table& table, std::size_t codes, int sample) {
  std::size_t best = 0;
  for (std::size_t code = 0; code < codes; ++code) {
    if (std::abs(table[code] - sample) < std::abs(table[best] - sample)) best = code;
  }
  return static_cast<std::uint16_t>(best);
}

void expectTheRule(const Table& table, std::int64_t bits) {
  const InverseLinearization inverse(table, bits);
  const std::size_t codes = std::min(table.size(), std::size_t{1} << bits);
  for (int sample = 0; sample <= 65535; ++sample) {
    const std::uint16_t code = nearestCode(table, codes, sample);
    ASSERT_EQ(inverse.code(static_cast<std::uint16_t>(sample)), code) << sample;
    ASSERT_EQ(inverse.readBack(static_cast<std::uint16_t>(sample)), table[code]) << sample;
  }
}

std::string refusal(const Table& table) {
  try {
    InverseLinearization(table, 8);
    return "";
  } catch (const DNGError& error) {
    return error.what();
  }
}

TEST(InverseLinearization, GivesTheSmallestCodeOfARepeatedValueAndTheNearestOfASkippedOne) {
  const InverseLinearization inverse(Table{0, 10, 10, 30}, 8);
  EXPECT_EQ(inverse.code(10), 1);
  EXPECT_EQ(inverse.code(19), 1);
  EXPECT_EQ(inverse.code(20), 1);
  EXPECT_EQ(inverse.code(21), 3);
  EXPECT_EQ(inverse.readBack(21), 30);
}

TEST(InverseLinearization, GivesTheSmallerCodeOfTwoEquallyNearInAFallingTable) {
  const InverseLinearization inverse(Table{30, 10, 10, 0}, 8);
  EXPECT_EQ(inverse.code(20), 0);
  EXPECT_EQ(inverse.code(19), 1);
  EXPECT_EQ(inverse.code(5), 1);
  EXPECT_EQ(inverse.code(4), 3);
}

TEST(InverseLinearization, FollowsTheRuleForEverySample) {
  expectTheRule({0, 1, 2, 3, 1000, 1000, 1000, 40000, 65535}, 8);
  expectTheRule({65535, 65535, 60000, 300, 7, 7, 7}, 8);
  expectTheRule({500}, 8);
  expectTheRule({500, 500, 500}, 8);
  expectTheRule({65535, 0}, 8);
}

TEST(InverseLinearization, NeverGivesACodeThatTheDepthCannotHold) {
  Table table;
  for (int code = 0; code < 300; ++code)
    table.push_back(static_cast<std::uint16_t>(200 * code));
  expectTheRule(table, 8);
  EXPECT_EQ(InverseLinearization(table, 8).code(65535), 255);
  EXPECT_EQ(InverseLinearization(table, 10).code(65535), 299);
}

TEST(InverseLinearization, RefusesATableThatRisesAndFalls) {
  EXPECT_EQ(refusal({0, 10, 9}), "Unsupported DNG: Inverse nonmonotonic LinearizationTable");
  EXPECT_EQ(refusal({10, 0, 1}), "Unsupported DNG: Inverse nonmonotonic LinearizationTable");
  EXPECT_EQ(refusal({5, 5, 6, 5}), "Unsupported DNG: Inverse nonmonotonic LinearizationTable");
}

TEST(InverseLinearization, AcceptsATableThatStandsStill) {
  EXPECT_EQ(refusal({5, 5}), "");
  EXPECT_EQ(refusal({0, 0, 1, 1}), "");
  EXPECT_EQ(refusal({1, 1, 0, 0}), "");
}

// A table that turns only beyond the codes that the depth can hold is refused all the same.
TEST(InverseLinearization, LooksAtTheWholeTable) {
  Table table(300);
  for (std::size_t code = 0; code < 300; ++code)
    table[code] = static_cast<std::uint16_t>(code < 280 ? code : 0);
  EXPECT_EQ(refusal(table), "Unsupported DNG: Inverse nonmonotonic LinearizationTable");
}

}  // namespace
}  // namespace tessaly
