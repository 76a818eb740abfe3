#include "calibration/TestSensor.h"
#include "calibration/columns/TrailingColumnDetector.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace tessaly {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using TrailingColumnDetector::detect;

/// Frames of one seed: the values of each group.
std::vector<TrailFrameEvidence> frames(const std::vector<std::vector<double>>& groups) {
  std::vector<TrailFrameEvidence> result;
  for (std::size_t group = 0; group < groups.size(); ++group) {
    for (const double value : groups[group])
      result.push_back({"group-" + std::to_string(group), {value}});
  }
  return result;
}

const std::vector<TrailSeed> oneSeed{{100, 50}};

TEST(TrailingColumnDetector, FindsATrailInTwoGroups) {
  const auto found = detect(oneSeed, frames({{4, 5, 6}, {3, 3.5, 4}}));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0], (TrailDetection{{100, 50}, 5, 1, 2})) << "the upper one of two effects";
}

TEST(TrailingColumnDetector, FindsNothingWithoutSeeds) {
  EXPECT_THAT(detect({}, {}), IsEmpty());
  EXPECT_THAT(detect({}, std::vector<TrailFrameEvidence>(6, {"a", {}})), IsEmpty());
}

TEST(TrailingColumnDetector, FindsNothingInInconsistentEvidence) {
  auto evidence = frames({{4, 5, 6}, {4, 5, 6}});
  ASSERT_THAT(detect(oneSeed, evidence), SizeIs(1));
  evidence[3].values.push_back(1);
  EXPECT_THAT(detect(oneSeed, evidence), IsEmpty());
  evidence[3].values.clear();
  EXPECT_THAT(detect(oneSeed, evidence), IsEmpty());
}

TEST(TrailingColumnDetector, NeedsTwoExposureGroups) {
  EXPECT_THAT(detect(oneSeed, frames({{4, 5, 6, 7, 8, 9}})), IsEmpty());
  EXPECT_THAT(detect(oneSeed, frames({{4, 5, 6}, {0, 0, 0}})), IsEmpty()) << "seen in one only";
}

TEST(TrailingColumnDetector, CountsGroupsOfMoreThanTwoFrames) {
  EXPECT_THAT(detect(oneSeed, frames({{4, 5, 6}, {4, 5}})), IsEmpty());
  EXPECT_THAT(detect(oneSeed, frames({{4, 5, 6}, {4, 5, 6}, {-9, -9}})), SizeIs(1));
}

TEST(TrailingColumnDetector, FindsNothingWhenTwoGroupsHaveOppositeSigns) {
  EXPECT_THAT(detect(oneSeed, frames({{4, 5, 6}, {-4, -5, -6}})), IsEmpty());
}

TEST(TrailingColumnDetector, NeedsFourFifthsOfTheCountingGroups) {
  const std::vector<double> up{4, 5, 6};
  const std::vector<double> down{-4, -5, -6};
  const std::vector<double> weak{1, 1, 1};
  EXPECT_THAT(detect(oneSeed, frames({up, up, up, down})), IsEmpty()) << "three of four";
  const auto found = detect(oneSeed, frames({up, up, up, up, down}));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].exposureGroupCount, 4);
  EXPECT_EQ(found[0].effect, 5);
  EXPECT_THAT(detect(oneSeed, frames({up, down, down, down, down})), SizeIs(1));
  EXPECT_THAT(detect(oneSeed, frames({up, up, weak, weak, weak})), SizeIs(1)) << "weak groups do not count";
}

TEST(TrailingColumnDetector, AcceptsAnEffectOfTwoAndAHalfWithFourFramesInFive) {
  EXPECT_THAT(detect(oneSeed, frames({{2.5, 2.5, 2.5, 2.5, -1}, {2.5, 2.5, 2.5, 2.5, -1}})), SizeIs(1));
  EXPECT_THAT(detect(oneSeed, frames({{2.499, 2.499, 2.499, 2.499, -1}, {9, 9, 9}})), IsEmpty());
  EXPECT_THAT(detect(oneSeed, frames({{2.5, 2.5, 2.5, -1, -1}, {9, 9, 9}})), IsEmpty()) << "three in five";
}

TEST(TrailingColumnDetector, CountsZeroAsNotPositive) {
  EXPECT_THAT(detect(oneSeed, frames({{-5, -5, -5, 0, 0}, {-5, -5, -5, 0, 0}})), SizeIs(1));
  EXPECT_THAT(detect(oneSeed, frames({{5, 5, 5, 0, 0}, {5, 5, 5, 0, 0}})), IsEmpty());
}

TEST(TrailingColumnDetector, GivesTheSmallestAgreementOfTheMajority) {
  const auto found = detect(oneSeed, frames({{3, 3, 3, 3, -1}, {4, 4, 4}, {5, 5, 5}}));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].agreement, 0.8);
  EXPECT_EQ(found[0].effect, 4);
}

TEST(TrailingColumnDetector, TakesAnotherLimitWhenAsked) {
  EXPECT_THAT(detect(oneSeed, frames({{2, 2, 2}, {2, 2, 2}}), 2.0), SizeIs(1));
  EXPECT_THAT(detect(oneSeed, frames({{2, 2, 2}, {2, 2, 2}}), 2.1), IsEmpty());
}

TEST(TrailingColumnDetector, SortsByStrengthThenByPosition) {
  const std::vector<TrailSeed> seeds{{10, 5}, {20, 9}, {30, 1}, {40, 1}};
  std::vector<TrailFrameEvidence> evidence;
  for (const char* key : {"a", "a", "a", "b", "b", "b"})
    evidence.push_back({key, {3, -7, 5, -5}});
  const auto found = detect(seeds, evidence);
  ASSERT_THAT(found, SizeIs(4));
  EXPECT_EQ(found[0].seed.x, 20);
  EXPECT_EQ(found[1].seed.x, 30);
  EXPECT_EQ(found[2].seed.x, 40);
  EXPECT_EQ(found[3].seed.x, 10);
}

TEST(TrailCandidates, ReachFromTheSeedToTheLastActiveRow) {
  const DNGMetadata metadata = tests::withBorder(tests::linearSensor(300, 400), 64, 32);
  const std::vector<TrailDetection> detections{{{100, 50}, -3.4, 0.8, 2}};
  const auto lines = CalibrationEngine::trailCandidates(detections, metadata);
  ASSERT_THAT(lines, SizeIs(1));
  CalibrationCandidate expected;
  expected.id = lines[0].id;
  expected.kind = CalibrationCandidate::Kind::line;
  expected.x = 100;
  expected.yStart = 50;
  expected.yEnd = 431;
  expected.confidence = 3.4 / 30 + 0.62;
  expected.frameAgreement = 0.8;
  expected.exposureGroupCount = 2;
  expected.reason =
      "Partial defective column below a fixed pixel; column offset -3.4; repeated across 2 exposure groups";
  EXPECT_EQ(lines[0], expected);
}

TEST(TrailCandidates, CapTheConfidenceAndSignTheOffset) {
  const DNGMetadata metadata = tests::linearSensor(300, 400);
  const auto lines = CalibrationEngine::trailCandidates(std::vector<TrailDetection>{{{100, 50}, 200, 1, 3}}, metadata);
  EXPECT_EQ(lines[0].confidence, 0.99);
  EXPECT_EQ(lines[0].reason,
            "Partial defective column below a fixed pixel; column offset +200.0; repeated across 3 exposure groups");
}

}  // namespace
}  // namespace tessaly
