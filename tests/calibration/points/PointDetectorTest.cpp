#include "calibration/TestSensor.h"
#include "calibration/points/DeviationMap.h"
#include "calibration/points/PointDetector.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace tessaly {
namespace {

using CalibrationEngine::detectPointGroup;
using tests::linearSensor;
using tests::mosaicSensor;
using tests::TestFrame;
using tests::withBorder;
using Kind = CalibrationCandidate::Kind;

constexpr std::uint16_t brightLevel = 8000;
constexpr std::uint16_t hot = 12000;  // 500 thousandths
constexpr bool bright = false;
constexpr bool dark = true;

std::vector<CalibrationCandidate> detect(const DNGMetadata& metadata, bool isDark, const std::vector<TestFrame>& frames,
                                         int threads = 1) {
  DeviationMap map(metadata, threads);
  map.reset(isDark);
  for (const TestFrame& frame : frames)
    map.add(frame.samples());
  return detectPointGroup(map);
}

std::vector<CalibrationCandidate> ofKind(Kind kind, std::vector<CalibrationCandidate> candidates) {
  std::erase_if(candidates, [kind](const CalibrationCandidate& candidate) { return candidate.kind != kind; });
  return candidates;
}

// `frames` frames of which the first `defective` show the level at one place.
std::vector<TestFrame> framesWithPixel(const DNGMetadata& metadata, int frames, int defective, std::uint16_t level) {
  std::vector<TestFrame> result(static_cast<std::size_t>(frames), TestFrame(metadata, brightLevel));
  for (int frame = 0; frame < defective; ++frame)
    result[static_cast<std::size_t>(frame)].at(20, 15) = level;
  return result;
}

TEST(PointDetector, FindsAPixelThatIsBrightInFourOfFiveFramesButNotInThree) {
  const DNGMetadata metadata = linearSensor(40, 30);
  EXPECT_EQ(detect(metadata, bright, framesWithPixel(metadata, 5, 5, hot)).size(), 1U);
  EXPECT_EQ(detect(metadata, bright, framesWithPixel(metadata, 5, 4, hot)).size(), 1U);
  EXPECT_EQ(detect(metadata, bright, framesWithPixel(metadata, 5, 3, hot)).size(), 0U);
}

TEST(PointDetector, NeedsTwoOfThreeFramesToAgree) {
  const DNGMetadata metadata = linearSensor(40, 30);
  EXPECT_EQ(detect(metadata, bright, framesWithPixel(metadata, 3, 2, hot)).size(), 1U);
  EXPECT_EQ(detect(metadata, bright, framesWithPixel(metadata, 3, 1, 16000)).size(), 1U)
      << "two of three frames agree that it is not too bright, and the mean is large";
}

TEST(PointDetector, DescribesAPixelInRawCoordinates) {
  const DNGMetadata metadata = withBorder(mosaicSensor(40, 30), 7, 4);
  const auto found = detect(metadata, bright, framesWithPixel(metadata, 5, 5, hot));
  ASSERT_EQ(found.size(), 1U);
  CalibrationCandidate expected;
  expected.id = found[0].id;
  expected.kind = Kind::pixel;
  expected.x = 27;
  expected.yStart = 19;
  expected.yEnd = 19;
  expected.width = 1;
  expected.confidence = std::min(0.2 + 0.45 + std::min(500 / 550.0, 1.0) * 0.35, 0.99);
  expected.reason = "Isolated response anomaly repeated in bright-field frames";
  EXPECT_EQ(found[0], expected);
  EXPECT_NE(found[0].id, UUID{});
}

TEST(PointDetector, MeasuresDarkFramesInSampleUnits) {
  const DNGMetadata metadata = linearSensor(40, 30);
  std::vector<TestFrame> frames(3, TestFrame(metadata, 100));
  for (TestFrame& frame : frames) {
    frame.at(20, 15) = 124;  // exactly the noise scale, 24 levels of the reference range
    frame.at(30, 20) = 123;
  }
  const auto found = detect(metadata, dark, frames);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].x, 20);
  EXPECT_EQ(found[0].reason, "Abnormal pixel repeated in dark frames");
  EXPECT_EQ(found[0].confidence, 0.2 + 0.45 + 0.2 * 0.35);
}

TEST(PointDetector, ScalesTheDarkThresholdToTheSensorWithoutRounding) {
  DNGMetadata metadata = linearSensor(40, 30);
  metadata.whiteLevel = 1000;  // 1.485 levels
  std::vector<TestFrame> frames(3, TestFrame(metadata, 100));
  for (TestFrame& frame : frames)
    frame.at(20, 15) = 102;
  for (int frame = 0; frame < 2; ++frame)
    frames[static_cast<std::size_t>(frame)].at(30, 20) = 102;  // 1.33 on average
  const auto found = detect(metadata, dark, frames);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].x, 20);
}

TEST(PointDetector, FindsPixelsThatAreTooDark) {
  const DNGMetadata metadata = mosaicSensor(40, 30);
  EXPECT_EQ(ofKind(Kind::pixel, detect(metadata, bright, framesWithPixel(metadata, 5, 5, 0))).size(), 1U);
}

TEST(PointDetector, DoesNotMeasureTheTwoOutermostSamples) {
  const DNGMetadata metadata = withBorder(linearSensor(40, 30), 6, 6);
  std::vector<TestFrame> frames(3, TestFrame(metadata, brightLevel));
  for (TestFrame& frame : frames) {
    frame.at(1, 10) = hot;
    frame.at(38, 10) = hot;
    frame.at(10, 1) = hot;
    frame.at(10, 28) = hot;
  }
  EXPECT_TRUE(detect(metadata, bright, frames).empty());
  for (TestFrame& frame : frames) {
    frame.at(2, 20) = hot;
    frame.at(37, 20) = hot;
    frame.at(20, 2) = hot;
    frame.at(20, 27) = hot;
  }
  EXPECT_EQ(detect(metadata, bright, frames).size(), 4U);
}

TEST(PointDetector, FindsNothingInAnAreaOfLessThanFiveSamples) {
  for (const auto& [width, height] : {std::pair{4, 30}, std::pair{30, 4}, std::pair{1, 1}, std::pair{3, 30}}) {
    const DNGMetadata metadata = withBorder(linearSensor(width, height), 4, 4);
    std::vector<TestFrame> frames(3, TestFrame(metadata, brightLevel));
    for (TestFrame& frame : frames)
      frame.at(width / 2, height / 2) = hot;
    EXPECT_TRUE(detect(metadata, bright, frames).empty()) << width << " × " << height;
  }
}

TEST(PointDetector, FindsTheOnlyMeasuredSampleOfFiveByFive) {
  const DNGMetadata metadata = mosaicSensor(5, 5);
  std::vector<TestFrame> frames(3, TestFrame(metadata, brightLevel));
  for (TestFrame& frame : frames)
    frame.at(2, 2) = hot;
  EXPECT_EQ(detect(metadata, bright, frames).size(), 1U);
}

// Each weakens the ratio of the other to 1; they pass because fewer than two neighbours are that strong.
TEST(PointDetector, FindsTwoAdjacentHotPixelsOfTheSameColourWhenTheyAreOutstanding) {
  const DNGMetadata metadata = linearSensor(40, 30);
  const auto found = [&](std::uint16_t level) {
    auto frames = framesWithPixel(metadata, 5, 5, level);
    for (TestFrame& frame : frames)
      frame.at(21, 15) = level;
    return detect(metadata, bright, frames);
  };
  ASSERT_EQ(found(10200).size(), 2U) << "275 thousandths: 2.5 times the scale";
  EXPECT_DOUBLE_EQ(found(10200)[0].confidence, 1 / 3.0 * 0.2 + 0.45 + 275 / 550.0 * 0.35);
  EXPECT_EQ(found(10199).size(), 0U);
}

TEST(PointDetector, RejectsAHotPixelWithTwoEquallyHotNeighbours) {
  const DNGMetadata metadata = linearSensor(40, 30);
  auto frames = framesWithPixel(metadata, 5, 5, hot);
  for (TestFrame& frame : frames) {
    frame.at(21, 16) = hot;
    frame.at(22, 17) = hot;
  }
  const auto found = ofKind(Kind::pixel, detect(metadata, bright, frames));
  ASSERT_EQ(found.size(), 2U) << "the outer ones have one such neighbour each";
  EXPECT_EQ(found[0].x, 20);
  EXPECT_EQ(found[1].x, 22);
}

TEST(PointDetector, ComparesPixelsOfAMosaicWithTheSameColourOnly) {
  const DNGMetadata metadata = mosaicSensor(40, 30);
  auto frames = framesWithPixel(metadata, 5, 5, hot);  // (20, 15) is green
  for (TestFrame& frame : frames) {
    frame.at(21, 15) = hot;  // blue
    frame.at(20, 16) = hot;  // red
  }
  EXPECT_EQ(detect(metadata, bright, frames).size(), 3U);
  for (TestFrame& frame : frames)
    frame.at(21, 16) = hot;  // the other green
  EXPECT_EQ(detect(metadata, bright, frames).size(), 4U) << "the two greens weaken each other but are outstanding";
  const auto confidences = detect(metadata, bright, frames);
  EXPECT_LT(confidences[3].confidence, confidences[1].confidence);
}

TEST(PointDetector, AnchorsTheColoursAtTheActiveArea) {
  DNGMetadata metadata = withBorder(mosaicSensor(40, 30), 1, 0);
  metadata.cfaLayout = CFALayout{2, 2, {1, 0, 2, 1}};  // active (20, 14) and (21, 15) are the two greens
  std::vector<TestFrame> frames(5, TestFrame(metadata, brightLevel));
  for (TestFrame& frame : frames) {
    frame.at(20, 14) = hot;
    frame.at(21, 15) = hot;
  }
  const auto found = detect(metadata, bright, frames);
  ASSERT_EQ(found.size(), 2U);
  for (const CalibrationCandidate& pixel : found)
    EXPECT_DOUBLE_EQ(pixel.confidence, 1 / 3.0 * 0.2 + 0.45 + 500 / 550.0 * 0.35) << "weakened by the other green";
}

TEST(PointDetector, DropsWeakAnomalies) {
  const DNGMetadata metadata = linearSensor(40, 30);
  auto frames = framesWithPixel(metadata, 5, 4, 9112);  // 139 thousandths in four frames: 111.2 on average
  ASSERT_EQ(detect(metadata, bright, frames).size(), 1U);
  for (TestFrame& frame : frames)
    frame.at(21, 15) = 8600;  // 75 thousandths: the ratio falls to 1.48, the confidence to 0.53
  EXPECT_TRUE(detect(metadata, bright, frames).empty());
}

// 63 rows of 71 equal hot pixels, five samples apart.
std::vector<TestFrame> thousandsOfPixels(const DNGMetadata& metadata) {
  std::vector<TestFrame> frames(3, TestFrame(metadata, brightLevel));
  for (TestFrame& frame : frames) {
    for (std::int64_t y = 2; y < metadata.activeHeight - 2; y += 5) {
      for (std::int64_t x = 2; x < metadata.activeWidth - 2; x += 5)
        frame.at(x, y) = 15000;
    }
  }
  return frames;
}

TEST(PointDetector, ReturnsTheFirstThreeThousandCandidatesOfAGroup) {
  const DNGMetadata metadata = linearSensor(355, 315);
  auto frames = thousandsOfPixels(metadata);
  for (TestFrame& frame : frames)
    frame.at(7, 2) = 9000;  // 125 thousandths: less confident than all others
  const auto found = detect(metadata, bright, frames);
  ASSERT_EQ(found.size(), 3000U);
  EXPECT_EQ(found.front().x, 2);
  EXPECT_EQ(found.front().yStart, 2);
  EXPECT_EQ(found[1].x, 12) << "without the weak one";
  EXPECT_EQ(found[70].yStart, 7) << "equally confident ones are row by row";
  EXPECT_EQ(found.back().yStart, 2 + 5 * (3000 / 71));
  EXPECT_EQ(found.back().x, 2 + 5 * (3000 % 71));
}

TEST(PointDetector, PrefersConfidentCandidatesWhereverTheyAre) {
  const DNGMetadata metadata = linearSensor(355, 315);
  auto frames = thousandsOfPixels(metadata);
  for (TestFrame& frame : frames) {
    for (std::int64_t y = 2; y < 150; y += 5) {
      for (std::int64_t x = 2; x < 353; x += 5)
        frame.at(x, y) = 9000;
    }
  }
  const auto found = detect(metadata, bright, frames);
  ASSERT_EQ(found.size(), 3000U);
  EXPECT_EQ(found.front().yStart, 152);
  EXPECT_EQ(found.back().yStart, 2 + 5 * ((2999 - 33 * 71) / 71))
      << "33 rows of bright ones, then weak ones from the top";
}

bool sameFindings(const std::vector<CalibrationCandidate>& left, const std::vector<CalibrationCandidate>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](CalibrationCandidate first, const CalibrationCandidate& second) {
                      first.id = second.id;
                      return first == second;
                    });
}

TEST(PointDetector, FindsTheSameOnAnyNumberOfThreads) {
  const DNGMetadata metadata = mosaicSensor(331, 217);
  std::mt19937 random(3);
  std::vector<TestFrame> frames(4, TestFrame(metadata, brightLevel));
  for (int defect = 0; defect < 4000; ++defect) {
    const std::int64_t x = random() % 331;
    const std::int64_t y = random() % 217;
    const auto level = static_cast<std::uint16_t>(random() % 16163);
    for (TestFrame& frame : frames)
      frame.at(x, y) = static_cast<std::uint16_t>(level + random() % 100);
  }
  const auto found = detect(metadata, bright, frames, 1);
  ASSERT_FALSE(ofKind(Kind::pixel, found).empty());
  ASSERT_FALSE(ofKind(Kind::spot, found).empty());
  for (const int threads : {2, 3, 7, 400})
    EXPECT_TRUE(sameFindings(found, detect(metadata, bright, frames, threads))) << threads << " threads";
}

TEST(PointDetector, CountsAgreementUpTo255Frames) {
  const DNGMetadata metadata = linearSensor(7, 7);
  EXPECT_EQ(detect(metadata, bright, std::vector(318, framesWithPixel(metadata, 1, 0, 0)[0])).size(), 0U);
  TestFrame frame(metadata, brightLevel);
  frame.at(3, 3) = hot;
  EXPECT_EQ(detect(metadata, bright, std::vector(318, frame)).size(), 1U) << "four fifths of 318 are 254";
  EXPECT_EQ(detect(metadata, bright, std::vector(320, frame)).size(), 0U) << "four fifths of 320 are 256";
}

}  // namespace
}  // namespace tessaly
