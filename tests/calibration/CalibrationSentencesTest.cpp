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

TEST(ProgressMessages, NameTheFileWhateverItIsCalled) {
  EXPECT_EQ(ProgressMessages::reading("a.dng"), "Reading a.dng");
  EXPECT_EQ(ProgressMessages::analyzing("%d {} %@.dng"), "Analyzing %d {} %@.dng");
  EXPECT_EQ(ProgressMessages::checkingPartialColumn(""), "Checking partial defective column in ");
}

}  // namespace
}  // namespace tessaly
