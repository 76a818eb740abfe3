#include "calibration/points/SpotMerging.h"

#include <gmock/gmock.h>

#include <vector>

namespace tessaly {
namespace {

using CalibrationEngine::mergeSpotCandidates;

CalibrationCandidate spot(std::int64_t x, std::int64_t y, std::int64_t radius, double confidence = 0.8) {
  CalibrationCandidate candidate;
  candidate.id = UUID::random();
  candidate.kind = CalibrationCandidate::Kind::spot;
  candidate.x = x;
  candidate.yStart = y;
  candidate.yEnd = y;
  candidate.radiusX = radius;
  candidate.radiusY = radius;
  candidate.confidence = confidence;
  return candidate;
}

TEST(SpotMerging, DropsASpotOfOneGroupOnly) {
  EXPECT_TRUE(mergeSpotCandidates({}).empty());
  EXPECT_TRUE(mergeSpotCandidates({spot(100, 100, 5)}).empty());
  EXPECT_TRUE(mergeSpotCandidates({spot(100, 100, 5), spot(300, 100, 5)}).empty());
}

TEST(SpotMerging, JoinsSpotsSevenApartByTheirRadii) {
  EXPECT_TRUE(mergeSpotCandidates({spot(100, 100, 2), spot(107, 100, 3)}).empty()) << "limit 6";
  EXPECT_EQ(mergeSpotCandidates({spot(100, 100, 4), spot(107, 100, 4)}).size(), 1U) << "limit 8";
  EXPECT_TRUE(mergeSpotCandidates({spot(100, 100, 2), spot(100, 107, 3)}).empty());
  EXPECT_EQ(mergeSpotCandidates({spot(100, 100, 4), spot(100, 92, 4)}).size(), 1U);
  EXPECT_TRUE(mergeSpotCandidates({spot(100, 100, 4), spot(100, 91, 4)}).empty());
}

TEST(SpotMerging, JoinsSpotsUpToSixApartHoweverSmall) {
  EXPECT_EQ(mergeSpotCandidates({spot(100, 100, 0), spot(94, 106, 0)}).size(), 1U);
  EXPECT_TRUE(mergeSpotCandidates({spot(100, 100, 0), spot(93, 100, 0)}).empty());
}

TEST(SpotMerging, ComparesWithTheFirstMemberOnly) {
  EXPECT_EQ(mergeSpotCandidates({spot(100, 100, 0), spot(106, 100, 0), spot(112, 100, 0)}).size(), 1U);
  const auto merged = mergeSpotCandidates({spot(100, 100, 0), spot(106, 100, 0), spot(112, 100, 0)});
  EXPECT_EQ(merged[0].x, 103) << "the third spot is twelve from the first";
}

TEST(SpotMerging, JoinsTheFirstClusterThatIsClose) {
  const auto merged = mergeSpotCandidates({spot(100, 100, 0), spot(110, 100, 0), spot(105, 100, 0)});
  ASSERT_EQ(merged.size(), 1U);
  EXPECT_EQ(merged[0].x, 103) << "102.5, rounded away from zero";
}

TEST(SpotMerging, DescribesTheMergedSpot) {
  const CalibrationCandidate first = spot(100, 201, 5, 0.9);
  const CalibrationCandidate second = spot(103, 200, 7, 0.7);
  const auto merged = mergeSpotCandidates({first, second});
  ASSERT_EQ(merged.size(), 1U);
  CalibrationCandidate expected;
  expected.id = merged[0].id;
  expected.kind = CalibrationCandidate::Kind::spot;
  expected.x = 102;       // 101.5
  expected.yStart = 201;  // 200.5
  expected.yEnd = 201;
  expected.width = 1;
  expected.radiusX = 8;  // 1 + 7
  expected.radiusY = 8;  // 1 + 7
  expected.confidence = (0.9 + 0.7) / 2 + 0.04;
  expected.reason = "Fixed sensor spot repeated in 2 bright-field exposure groups";
  EXPECT_EQ(merged[0], expected);
  EXPECT_NE(merged[0].id, first.id);
  EXPECT_NE(merged[0].id, second.id);
}

TEST(SpotMerging, CapsTheConfidence) {
  EXPECT_EQ(mergeSpotCandidates({spot(100, 100, 5, 0.95), spot(100, 100, 5, 0.95)})[0].confidence, 0.98);
}

TEST(SpotMerging, CountsMembersNotGroups) {
  const auto merged = mergeSpotCandidates({spot(100, 100, 5), spot(102, 100, 5), spot(104, 100, 5)});
  ASSERT_EQ(merged.size(), 1U);
  EXPECT_EQ(merged[0].reason, "Fixed sensor spot repeated in 3 bright-field exposure groups");
}

TEST(SpotMerging, KeepsTheOrderOfTheFirstSpots) {
  const auto merged = mergeSpotCandidates({spot(500, 100, 5), spot(100, 100, 5), spot(100, 100, 5), spot(500, 100, 5)});
  ASSERT_EQ(merged.size(), 2U);
  EXPECT_EQ(merged[0].x, 500);
  EXPECT_EQ(merged[1].x, 100);
}

}  // namespace
}  // namespace tessaly
