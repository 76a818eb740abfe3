#include "calibration/CandidateMerging.h"

#include <gmock/gmock.h>

#include <vector>

namespace tessaly {
namespace {

using CalibrationEngine::mergePixels;
using CalibrationEngine::orderCandidates;
using testing::ElementsAre;
using Kind = CalibrationCandidate::Kind;

CalibrationCandidate candidate(Kind kind, std::int64_t x, std::int64_t y, double confidence) {
  CalibrationCandidate result;
  result.id = UUID::random();
  result.kind = kind;
  result.x = x;
  result.yStart = y;
  result.yEnd = y;
  result.confidence = confidence;
  return result;
}

CalibrationCandidate pixel(std::int64_t x, std::int64_t y, double confidence) {
  return candidate(Kind::pixel, x, y, confidence);
}

std::vector<CalibrationCandidate> merged(const std::vector<CalibrationCandidate>& pixels) {
  return mergePixels(pixels);
}

TEST(PixelMerging, DropsAPixelOfOneGroup) {
  EXPECT_TRUE(merged({}).empty());
  EXPECT_TRUE(merged({pixel(5, 6, 0.9)}).empty());
  EXPECT_TRUE(merged({pixel(5, 6, 0.9), pixel(6, 5, 0.9), pixel(5, 7, 0.9)}).empty());
}

TEST(PixelMerging, DescribesAPixelOfTwoGroups) {
  const auto found = merged({pixel(5, 6, 0.7), pixel(5, 6, 0.8)});
  ASSERT_EQ(found.size(), 1U);
  CalibrationCandidate expected = pixel(5, 6, 0.8 + 0.03);
  expected.id = found[0].id;
  expected.reason = "Repeated in 2 independent exposure groups";
  EXPECT_EQ(found[0], expected);
}

TEST(PixelMerging, CapsTheConfidenceOfAPixelOfFiveGroups) {
  const auto found = merged(std::vector(5, pixel(5, 6, 0.97)));
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].confidence, 0.99);
  EXPECT_EQ(found[0].reason, "Repeated in 5 independent exposure groups");
}

TEST(PixelMerging, GivesEachMergedPixelItsOwnIdentity) {
  const CalibrationCandidate first = pixel(5, 6, 0.7);
  const auto found = merged({first, first, pixel(9, 9, 0.7), pixel(9, 9, 0.7)});
  ASSERT_EQ(found.size(), 2U);
  EXPECT_NE(found[0].id, first.id);
  EXPECT_NE(found[0].id, found[1].id);
}

std::vector<std::int64_t> orderedX(std::vector<CalibrationCandidate> candidates) {
  orderCandidates(candidates);
  std::vector<std::int64_t> result;
  for (const CalibrationCandidate& each : candidates)
    result.push_back(each.x);
  return result;
}

TEST(CandidateOrder, PutsLinesBeforeSpotsBeforePixels) {
  EXPECT_THAT(orderedX({pixel(1, 0, 0.9), candidate(Kind::spot, 2, 0, 0.1), candidate(Kind::line, 3, 0, 0.1)}),
              ElementsAre(3, 2, 1));
}

TEST(CandidateOrder, PutsTheMoreConfidentFirstThenSmallerXThenSmallerY) {
  std::vector<CalibrationCandidate> pixels{pixel(9, 1, 0.5), pixel(7, 3, 0.8), pixel(7, 2, 0.8), pixel(3, 9, 0.8),
                                           pixel(1, 1, 0.2)};
  orderCandidates(pixels);
  std::vector<std::pair<std::int64_t, std::int64_t>> positions;
  for (const CalibrationCandidate& each : pixels)
    positions.emplace_back(each.x, each.yStart);
  EXPECT_THAT(positions,
              ElementsAre(std::pair(3, 9), std::pair(7, 2), std::pair(7, 3), std::pair(9, 1), std::pair(1, 1)));
}

TEST(CandidateOrder, KeepsTheOrderOfEqualOnes) {
  std::vector<CalibrationCandidate> spots(3, candidate(Kind::spot, 2, 2, 0.5));
  spots[0].reason = "first";
  spots[1].reason = "second";
  spots[2].reason = "third";
  orderCandidates(spots);
  EXPECT_EQ(spots[0].reason, "first");
  EXPECT_EQ(spots[1].reason, "second");
  EXPECT_EQ(spots[2].reason, "third");
}

}  // namespace
}  // namespace tessaly
