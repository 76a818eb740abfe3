#include "calibration/CalibrationSentences.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tessaly {
namespace {

TEST(CandidateReasons, AreSentencesThatAreKeptAsTheyAre) {
  using namespace CandidateReasons;
  EXPECT_EQ(pixelInBrightFrames(), "Isolated response anomaly repeated in bright-field frames");
  EXPECT_EQ(pixelInDarkFrames(), "Abnormal pixel repeated in dark frames");
  EXPECT_EQ(repeatedPixel(2), "Repeated in 2 independent exposure groups");
  EXPECT_EQ(shadowInBrightFrames(), "Compact fixed shadow repeated in bright-field frames");
  EXPECT_EQ(repeatedSpot(12), "Fixed sensor spot repeated in 12 bright-field exposure groups");
  EXPECT_EQ(manuallyAdded(), "Manually added by user");
  EXPECT_EQ(confirmedSpot(), "User-confirmed fixed sensor spot");
}

TEST(CandidateReasons, RoundTheStrengthOfAColumn) {
  using CandidateReasons::fixedColumn;
  EXPECT_EQ(fixedColumn(6.3, 0.97, 3),
            "Fixed column anomaly 6.3σ; same sign in 97% of frames; repeated across 3 exposure groups");
  EXPECT_EQ(fixedColumn(1234.56, 0.9166, 12),
            "Fixed column anomaly 1234.6σ; same sign in 92% of frames; repeated across 12 exposure groups");
  EXPECT_EQ(fixedColumn(HUGE_VAL, 1, 2),
            "Fixed column anomaly infσ; same sign in 100% of frames; repeated across 2 exposure groups");
}

TEST(CandidateReasons, GiveTheOffsetOfAPartialColumnItsSign) {
  using CandidateReasons::partialColumn;
  EXPECT_EQ(partialColumn(-3.4, 2),
            "Partial defective column below a fixed pixel; column offset -3.4; repeated across 2 exposure groups");
  EXPECT_EQ(partialColumn(25, 3),
            "Partial defective column below a fixed pixel; column offset +25.0; repeated across 3 exposure groups");
}

TEST(CandidateReasons, SayHowStrongAFindingIs) {
  using namespace CandidateReasons;
  EXPECT_EQ(weakColumn(-1.234, 7.06), "Weak column: -1.23 u (7.1σ)");
  EXPECT_EQ(weakColumnInLight(0.5, 8), "Weak column: +0.50% of the light (8.0σ)");
  EXPECT_EQ(weakPartialColumn(2, 12), "Weak partial column: +2.00 u (12.0σ)");
  EXPECT_EQ(weakPartialColumnInLight(-0.25, 6.5), "Weak partial column: -0.25% of the light (6.5σ)");
  EXPECT_EQ(softShadow(1.26, 14), "Soft shadow: 1.3% of the light (14.0σ)");
  EXPECT_EQ(oddResponse(-4.5, 9), "Response -4.5% from its neighbours (9.0σ)");
  EXPECT_EQ(warmPixel(30, 11), "Warm: +30.0 u in dark frames (11.0σ)");
  EXPECT_EQ(unsteadyPixel(2.5, 7.7), "Unsteady: 2.5 times the usual noise (7.7σ)");
}

TEST(ProgressMessages, NameTheFileWhateverItIsCalled) {
  EXPECT_EQ(ProgressMessages::reading("a.dng"), "Reading a.dng");
  EXPECT_EQ(ProgressMessages::analyzing("%d {} %@.dng"), "Analyzing %d {} %@.dng");
  EXPECT_EQ(ProgressMessages::checkingPartialColumn(""), "Checking partial defective column in ");
}

}  // namespace
}  // namespace tessaly
