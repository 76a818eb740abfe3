#include "calibration/review/Proposals.h"
#include "calibration/review/ReviewCandidates.h"

#include <gmock/gmock.h>

namespace tessaly {
namespace {

using CandidateSelection::isIncludable;
using Finder = SecondOpinionFinding::Finder;
using tests::candidate;
using tests::spot;

SecondOpinionFinding shadow(std::int64_t radiusX, std::int64_t radiusY, double depth) {
  return {Finder::shadow, spot(0.9, radiusX, radiusY), 20, depth};
}

SecondOpinionFinding finding(Finder finder, CandidateKind kind, std::int64_t x, std::int64_t first, std::int64_t last) {
  SecondOpinionFinding result{finder, candidate(kind), 9, 0.1};
  result.candidate.x = x;
  result.candidate.yStart = first;
  result.candidate.yEnd = last;
  return result;
}

TEST(Proposals, LeaveOutWhatADocumentedCandidateTells) {
  CalibrationResult result;
  result.candidates = {candidate(CandidateKind::pixel), candidate(CandidateKind::line), spot(0.9, 6, 6)};
  result.candidates[1].yStart = 20;
  result.candidates[1].yEnd = 119;
  result.secondOpinion = SecondOpinion{
      {finding(Finder::run, CandidateKind::line, 40, 30, 119), finding(Finder::run, CandidateKind::line, 40, 60, 119),
       finding(Finder::column, CandidateKind::line, 41, 20, 119), shadow(9, 9, 0.02),
       finding(Finder::shadow, CandidateKind::spot, 47, 50, 50),
       finding(Finder::warm, CandidateKind::pixel, 40, 50, 50), finding(Finder::dim, CandidateKind::pixel, 40, 51, 51)},
      {},
      {}};
  const std::vector<SecondOpinionFinding>& all = result.secondOpinion->findings;
  EXPECT_THAT(CandidateSelection::proposals(result), testing::ElementsAre(all[1], all[2], all[4], all[6]));
}

TEST(Proposals, AreNoneWithoutASecondOpinion) {
  EXPECT_TRUE(CandidateSelection::proposals(CalibrationResult()).empty());
}

TEST(Proposals, OfferOnlySmallDeepShadowsAsSpots) {
  EXPECT_TRUE(isIncludable(shadow(5, 5, 0.05)));
  EXPECT_FALSE(isIncludable(shadow(6, 2, 0.5))) << "too wide";
  EXPECT_FALSE(isIncludable(shadow(2, 6, 0.5))) << "too high";
  EXPECT_FALSE(isIncludable(shadow(3, 3, 0.049))) << "too faint";
  EXPECT_TRUE(isIncludable(finding(Finder::dim, CandidateKind::pixel, 1, 1, 1)));
}

TEST(Proposals, KnowFromWhichApertureDustIsSeen) {
  EXPECT_DOUBLE_EQ(CandidateSelection::visibleFrom(0.04, 16), 8);
  EXPECT_DOUBLE_EQ(CandidateSelection::visibleFrom(0.0025, 16), 32);
}

}  // namespace
}  // namespace tessaly
