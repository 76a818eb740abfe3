#include "calibration/RawPreview.h"
#include "calibration/TestSensor.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace tessaly {
namespace {

using CalibrationEngine::inspectionPreview;
using CalibrationEngine::makePreview;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::linearSensor;
using tests::mosaicSensor;
using tests::TestFrame;
using tests::withBorder;

TEST(Preview, OfAFlatImageIsBlackEverywhere) {
  for (const DNGMetadata& metadata : {linearSensor(40, 30), mosaicSensor(40, 30)}) {
    const auto preview = makePreview(TestFrame(metadata, 5000).samples(), metadata, 1500);
    EXPECT_EQ(preview.width, 40);
    EXPECT_EQ(preview.height, 30);
    ASSERT_THAT(preview.pixels, SizeIs(1200));
    EXPECT_THAT(preview.pixels, Each(0));
  }
}

TEST(Preview, IsAtMostAsWideAsAsked) {
  const auto size = [](std::int64_t width, std::int64_t height) {
    const DNGMetadata metadata = linearSensor(width, height);
    const auto preview = makePreview(TestFrame(metadata, 1).samples(), metadata, 10);
    return std::pair(preview.width, preview.height);
  };
  EXPECT_EQ(size(9, 7), std::pair(std::int64_t{9}, std::int64_t{7}));
  EXPECT_EQ(size(10, 7), std::pair(std::int64_t{10}, std::int64_t{7}));
  EXPECT_EQ(size(11, 7), std::pair(std::int64_t{5}, std::int64_t{3}));
  EXPECT_EQ(size(29, 7), std::pair(std::int64_t{9}, std::int64_t{2}));
}

TEST(Preview, KeepsItsSizeWithoutRowsToShow) {
  const DNGMetadata metadata = linearSensor(40, 3);
  const auto preview = makePreview(TestFrame(metadata, 1).samples(), metadata, 10);
  EXPECT_EQ(preview.width, 10);
  EXPECT_EQ(preview.height, 0);
  EXPECT_THAT(preview.pixels, IsEmpty());
}

TEST(Preview, TakesEverySecondSampleOfALinearImage) {
  const DNGMetadata metadata = withBorder(linearSensor(4, 4), 3, 2);
  TestFrame frame(metadata, 0);
  frame.at(0, 0) = 0;
  frame.at(2, 0) = 255;
  frame.at(0, 2) = 100;
  frame.at(2, 2) = 50;
  frame.at(1, 1) = 9999;
  frame.at(3, 0) = 9999;
  EXPECT_THAT(makePreview(frame.samples(), metadata, 2).pixels, ElementsAre(0, 255, 100, 50));
}

TEST(Preview, RoundsTheMeanOfTwoByTwoSamplesOfAMosaic) {
  const DNGMetadata metadata = withBorder(mosaicSensor(6, 2), 3, 2);
  TestFrame frame(metadata, 0);
  frame.at(0, 0) = 1;
  frame.at(1, 1) = 1;
  frame.at(2, 0) = 255 * 4;
  EXPECT_THAT(makePreview(frame.samples(), metadata, 3).pixels, ElementsAre(1, 255, 0)) << "2 / 4 rounds to 1";
  frame.at(1, 1) = 0;
  EXPECT_THAT(makePreview(frame.samples(), metadata, 3).pixels, ElementsAre(0, 255, 0)) << "1 / 4 rounds to 0";
}

TEST(Preview, CountsTheLastColumnAndRowOfAMosaicTwice) {
  const DNGMetadata metadata = withBorder(mosaicSensor(3, 3), 3, 2);
  TestFrame frame(metadata, 0);
  frame.at(2, 2) = 100;
  frame.at(2, 0) = 40;
  const auto preview = makePreview(frame.samples(), metadata, 1500);
  // values: 0 10 20, 0 25 50, 0 50 100
  ASSERT_THAT(preview.pixels, SizeIs(9));
  EXPECT_EQ(preview.pixels[8], 255);
  EXPECT_EQ(preview.pixels[7], 50 * 255 / 100);
  EXPECT_EQ(preview.pixels[5], 50 * 255 / 100);
  EXPECT_EQ(preview.pixels[4], 25 * 255 / 100);
  EXPECT_EQ(preview.pixels[2], 20 * 255 / 100) << "(40 + 40 + 0 + 0 + 2) / 4";
}

/// A frame of noise, its values sorted, and a plain second opinion of both tone curves.
struct Noise {
  DNGMetadata metadata = linearSensor(97, 61);
  TestFrame frame{metadata, 0};
  std::vector<std::int64_t> values;
  std::vector<std::int64_t> sorted;

  explicit Noise(std::uint32_t spread) {
    std::mt19937 random(spread);
    for (std::int64_t y = 0; y < 61; ++y) {
      for (std::int64_t x = 0; x < 97; ++x) {
        frame.at(x, y) = static_cast<std::uint16_t>(random() % spread * (random() % spread) / spread);
        values.push_back(frame.at(x, y));
      }
    }
    sorted = values;
    std::sort(sorted.begin(), sorted.end());
  }

  [[nodiscard]] std::vector<std::uint8_t> linear() const {
    const std::size_t n = sorted.size();
    const std::int64_t low = sorted[n / 1000];
    const std::int64_t high = sorted[std::min(n * 999 / 1000, n - 1)];
    std::vector<std::uint8_t> grey;
    for (const std::int64_t value : values)
      grey.push_back(static_cast<std::uint8_t>(
          std::clamp<std::int64_t>((value - low) * 255 / std::max<std::int64_t>(high - low, 1), 0, 255)));
    return grey;
  }

  [[nodiscard]] std::vector<std::uint8_t> gamma() const {
    const std::size_t n = sorted.size();
    const std::int64_t low = std::max(metadata.blackLevel, sorted[n / 200]);
    const std::int64_t high = sorted[std::min(n * 995 / 1000, n - 1)];
    std::vector<std::uint8_t> grey;
    for (const std::int64_t value : values) {
      const double part = static_cast<double>(value - low) / static_cast<double>(std::max<std::int64_t>(high - low, 1));
      grey.push_back(static_cast<std::uint8_t>(std::round(std::pow(std::clamp(part, 0.0, 1.0), 0.45) * 255)));
    }
    return grey;
  }
};

TEST(Preview, EqualsTheOneThatSortingGives) {
  for (const std::uint32_t spread : {2U, 30U, 1000U, 65536U}) {
    const Noise noise(spread);
    EXPECT_EQ(makePreview(noise.frame.samples(), noise.metadata, 1500).pixels, noise.linear()) << spread;
  }
}

TEST(InspectionPreview, EqualsTheOneThatSortingGives) {
  for (const std::uint32_t spread : {2U, 30U, 1000U, 65536U}) {
    for (const std::int64_t black : {0, 20, 70000}) {
      Noise noise(spread);
      noise.metadata.blackLevel = black;
      EXPECT_EQ(inspectionPreview(noise.frame.samples(), noise.metadata).pixels, noise.gamma()) << spread;
    }
  }
}

TEST(InspectionPreview, LiftsShadows) {
  const DNGMetadata metadata = linearSensor(100, 10);
  TestFrame frame(metadata, 0);
  for (std::int64_t y = 0; y < 10; ++y) {
    for (std::int64_t x = 50; x < 100; ++x)
      frame.at(x, y) = 1000;
  }
  frame.at(0, 0) = 100;
  const auto preview = inspectionPreview(frame.samples(), metadata);
  EXPECT_EQ(preview.pixels[0], 90) << "0.1 to the power of 0.45 is 0.355";
  EXPECT_EQ(preview.pixels[1], 0);
  EXPECT_EQ(preview.pixels[50], 255);
}

TEST(InspectionPreview, HasFullResolutionUpToEightThousandColumns) {
  const auto width = [](std::int64_t activeWidth) {
    const DNGMetadata metadata = linearSensor(activeWidth, 4);
    return inspectionPreview(TestFrame(metadata, 1).samples(), metadata).width;
  };
  EXPECT_EQ(width(1), 1);
  EXPECT_EQ(width(8000), 8000);
  EXPECT_EQ(width(8001), 4000);
  EXPECT_EQ(width(16001), 8000) << "rounded down";
  EXPECT_EQ(width(16002), 5334);
}

TEST(InspectionPreview, KeepsItsSizeWithoutRowsToShow) {
  const DNGMetadata metadata = linearSensor(8001, 1);
  const auto preview = inspectionPreview(TestFrame(metadata, 1).samples(), metadata);
  EXPECT_EQ(preview.width, 4000);
  EXPECT_EQ(preview.height, 0);
  EXPECT_THAT(preview.pixels, IsEmpty());
}

TEST(InspectionPreview, ShowsAMosaicAsMeansAtEverySample) {
  const DNGMetadata metadata = mosaicSensor(3, 1);
  TestFrame frame(metadata, 0);
  frame.at(1, 0) = 400;
  EXPECT_THAT(inspectionPreview(frame.samples(), metadata).pixels, ElementsAre(255, 255, 0));
}

}  // namespace
}  // namespace tessaly
