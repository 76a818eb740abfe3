#include "calibration/CalibrationIntake.h"
#include "calibration/TestSensor.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

using CalibrationEngine::exposureKey;
using CalibrationEngine::isDarkFrame;
using tests::linearSensor;
using tests::mosaicSensor;
using tests::TestFrame;
using tests::withBorder;

std::string key(std::optional<std::int64_t> iso, std::optional<double> seconds) {
  DNGMetadata metadata;
  metadata.iso = iso;
  metadata.exposureSeconds = seconds;
  return exposureKey(metadata);
}

TEST(ExposureKey, IsTheISOAndTheTimeInMicroseconds) {
  EXPECT_EQ(key(200, 1.0 / 125), "200-8000");
  EXPECT_EQ(key(100, 30.0), "100-30000000");
}

TEST(ExposureKey, TakesZeroForWhatIsAbsent) {
  EXPECT_EQ(key(std::nullopt, std::nullopt), "0-0");
  EXPECT_EQ(key(400, std::nullopt), "400-0");
  EXPECT_EQ(key(std::nullopt, 0.5), "0-500000");
}

TEST(ExposureKey, RoundsHalfAMicrosecondAwayFromZero) {
  EXPECT_EQ(key(100, 0.0000025), "100-3");
  EXPECT_EQ(key(100, 0.0000024), "100-2");
  EXPECT_EQ(key(100, -0.0000025), "100--3");
  EXPECT_EQ(key(100, 1.0 / 3), "100-333333");
}

TEST(ExposureKey, HoldsTheLongestTimeThatAFileCanTell) {
  EXPECT_EQ(key(100, 4294967295.0), "100-4294967295000000");
}

// The reference range has 16163 levels, of which 400 are the limit.
TEST(DarkFrames, AreThoseBelow400LevelsOfTheReferenceRange) {
  const DNGMetadata metadata = linearSensor(300, 100);
  EXPECT_TRUE(isDarkFrame(TestFrame(metadata, 399).samples(), metadata));
  EXPECT_FALSE(isDarkFrame(TestFrame(metadata, 400).samples(), metadata));
}

TEST(DarkFrames, AreJudgedAboveTheBlackLevelOnTheRangeOfTheSensor) {
  DNGMetadata metadata = linearSensor(300, 100);
  metadata.blackLevel = 256;
  metadata.whiteLevel = 4095;  // 3839 × 400 / 16163 = 95.007
  EXPECT_TRUE(isDarkFrame(TestFrame(metadata, 350).samples(), metadata));
  EXPECT_FALSE(isDarkFrame(TestFrame(metadata, 351).samples(), metadata));
}

TEST(DarkFrames, AreAtMostOneLevelOverBlackOnATinyRange) {
  DNGMetadata metadata = linearSensor(300, 100);
  metadata.blackLevel = 10;
  metadata.whiteLevel = 20;
  EXPECT_TRUE(isDarkFrame(TestFrame(metadata, 10).samples(), metadata));
  EXPECT_FALSE(isDarkFrame(TestFrame(metadata, 11).samples(), metadata));
}

TEST(DarkFrames, AreToldByTheUpperMedianOfAGrid) {
  const DNGMetadata metadata = withBorder(linearSensor(33, 33), 5, 5);  // four grid positions: 0 and 32
  TestFrame frame(metadata, 0);
  for (const auto& [x, y] : {std::pair{0, 0}, std::pair{32, 32}})
    frame.at(x, y) = 5000;
  EXPECT_FALSE(isDarkFrame(frame.samples(), metadata)) << "two of four";
  frame.at(0, 0) = 0;
  EXPECT_TRUE(isDarkFrame(frame.samples(), metadata)) << "one of four";
}

TEST(DarkFrames, HaveAGridOf31SamplesOnAMosaic) {
  const DNGMetadata metadata = mosaicSensor(32, 32);
  TestFrame frame(metadata, 0);
  for (const auto& [x, y] : {std::pair{31, 0}, std::pair{31, 31}})
    frame.at(x, y) = 5000;
  EXPECT_FALSE(isDarkFrame(frame.samples(), metadata));
}

}  // namespace
}  // namespace tessaly
