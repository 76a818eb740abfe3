#include "calibration/review/Preselection.h"
#include "calibration/review/ReviewCandidates.h"

#include <gmock/gmock.h>

#include <limits>
#include <vector>

namespace tessaly {
namespace {

using namespace CandidateSelection;
using testing::UnorderedElementsAre;
using tests::candidate;
using tests::spot;
using Kind = CalibrationCandidate::Kind;

const double nan = std::numeric_limits<double>::quiet_NaN();

CalibrationCandidate line(std::optional<double> sigma, std::optional<double> agreement,
                          std::optional<std::int64_t> groups) {
  CalibrationCandidate result = candidate(Kind::line);
  result.evidenceSigma = sigma;
  result.frameAgreement = agreement;
  result.exposureGroupCount = groups;
  return result;
}

TEST(Preselection, TakesPixelsFromTheThresholdOn) {
  EXPECT_TRUE(isPreselected(candidate(Kind::pixel, 0.98), 0.98));
  EXPECT_FALSE(isPreselected(candidate(Kind::pixel, 0.979), 0.98));
  EXPECT_TRUE(isPreselected(candidate(Kind::pixel, 0.7), 0.6));
  EXPECT_FALSE(isPreselected(candidate(Kind::pixel, nan), 0.5));
}

TEST(Preselection, TakesStrongSpotsLargerThanFive) {
  EXPECT_TRUE(isPreselected(spot(0.98, 6, 6), 0.5));
  EXPECT_FALSE(isPreselected(spot(0.97, 6, 6), 0.5)) << "whatever the pixel threshold";
  EXPECT_FALSE(isPreselected(spot(0.98, 5, 6), 0.5));
  EXPECT_FALSE(isPreselected(spot(0.98, 6, 5), 0.5));
  EXPECT_FALSE(isPreselected(spot(nan, 6, 6), 0.5));
}

TEST(Preselection, TakesStrongColumns) {
  EXPECT_TRUE(isPreselected(line(5.0, 0.95, 2), 0.98));
  EXPECT_FALSE(isPreselected(line(4.99, 0.95, 2), 0.98));
  EXPECT_FALSE(isPreselected(line(5.0, 0.949, 2), 0.98));
  EXPECT_FALSE(isPreselected(line(5.0, 0.95, 1), 0.98));
  EXPECT_FALSE(isPreselected(line(5.0, std::nullopt, 2), 0.98));
  EXPECT_FALSE(isPreselected(line(5.0, 0.95, std::nullopt), 0.98));
  EXPECT_FALSE(isPreselected(line(nan, 0.95, 5), 0.98)) << "not a number is not a missing one";
  EXPECT_FALSE(isPreselected(line(9.0, nan, 5), 0.98));
}

TEST(Preselection, TakesPartialColumnsOfThreeGroups) {
  EXPECT_TRUE(isPreselected(line(std::nullopt, 0.9, 3), 0.98));
  EXPECT_FALSE(isPreselected(line(std::nullopt, 0.899, 3), 0.98));
  EXPECT_FALSE(isPreselected(line(std::nullopt, 0.9, 2), 0.98));
  EXPECT_FALSE(isPreselected(line(std::nullopt, std::nullopt, std::nullopt), 0.98));
  EXPECT_FALSE(isPreselected(line(std::nullopt, nan, 3), 0.98));
}

TEST(Preselection, GivesTheIdsOfAllThatStartIncluded) {
  const std::vector candidates{candidate(Kind::pixel, 0.99), candidate(Kind::pixel, 0.9), line(5.0, 1.0, 2)};
  EXPECT_THAT(preselected(candidates, 0.98), UnorderedElementsAre(candidates[0].id, candidates[2].id));
}

TEST(MatchingPixels, ReplaceThePixelsAndLeaveTheRest) {
  const std::vector candidates{candidate(Kind::pixel, 0.96), candidate(Kind::pixel, 0.94), candidate(Kind::pixel, 0.95),
                               candidate(Kind::line),        candidate(Kind::line),        spot(0.99, 9, 9)};
  const std::set<UUID> accepted{candidates[1].id, candidates[3].id};
  EXPECT_THAT(withMatchingPixels(candidates, accepted, 0.95),
              UnorderedElementsAre(candidates[0].id, candidates[2].id, candidates[3].id));
}

}  // namespace
}  // namespace tessaly
