#include "calibration/TestSensor.h"
#include "calibration/columns/ColumnEvidence.h"
#include "calibration/columns/ColumnResidual.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace tessaly {
namespace {

using CalibrationEngine::columnFrameEvidence;
using testing::Each;
using testing::SizeIs;
using tests::linearSensor;
using tests::mosaicSensor;
using tests::TestFrame;
using tests::withBorder;

std::vector<double> residuals(const TestFrame& frame, const DNGMetadata& metadata, int threads = 1) {
  return columnFrameEvidence(frame.samples(), "200-8000", metadata, threads).residuals;
}

TEST(ColumnEvidence, BelongsToAnExposureGroup) {
  const DNGMetadata metadata = linearSensor(40, 80);
  EXPECT_EQ(columnFrameEvidence(TestFrame(metadata, 5000).samples(), "200-8000", metadata, 1).exposureKey, "200-8000");
}

TEST(ColumnEvidence, IsTheOffsetOfAColumnThatRunsTheWholeHeight) {
  for (const DNGMetadata& metadata : {linearSensor(60, 200), withBorder(mosaicSensor(60, 200), 9, 5)}) {
    TestFrame frame(metadata, 5000);
    frame.addToColumn(30, 0, 40);
    const auto found = residuals(frame, metadata);
    ASSERT_THAT(found, SizeIs(60));
    EXPECT_EQ(found[30], 40);
    EXPECT_EQ(found[29], 0);
  }
}

TEST(ColumnEvidence, LeavesEightColumnsAtEitherBorder) {
  const DNGMetadata metadata = linearSensor(60, 200);
  for (const auto& [column, expected] :
       {std::pair{7, 0.0}, std::pair{8, 40.0}, std::pair{51, 40.0}, std::pair{52, 0.0}}) {
    TestFrame frame(metadata, 5000);
    frame.addToColumn(column, 0, 40);
    EXPECT_EQ(residuals(frame, metadata)[static_cast<std::size_t>(column)], expected) << "column " << column;
  }
}

TEST(ColumnEvidence, IsZeroWithFewerThanSixteenColumns) {
  for (const std::int64_t width : {1, 15, 16, 17}) {
    const DNGMetadata metadata = withBorder(linearSensor(width, 200), 20, 0);
    TestFrame frame(metadata, 5000);
    frame.addToColumn(std::min<std::int64_t>(8, width - 1), 0, 40);
    const auto found = residuals(frame, metadata);
    ASSERT_EQ(found.size(), static_cast<std::size_t>(width));
    EXPECT_EQ(std::ranges::count(found, 0.0), width - (width == 17 ? 1 : 0));
  }
}

TEST(ColumnEvidence, IsZeroWhenOnlyPartOfTheColumnIsOffset) {
  const DNGMetadata metadata = linearSensor(60, 200);
  TestFrame frame(metadata, 5000);
  frame.addToColumn(30, 120, 40);
  EXPECT_THAT(residuals(frame, metadata), Each(0));
}

TEST(ColumnEvidence, NeedsAFifthOfTheMeanInEveryBand) {
  const DNGMetadata metadata = linearSensor(60, 128);  // 8 rows are sampled: 32, 40, … 88: one a band
  const auto evidence = [&](int topBand) {
    TestFrame frame(metadata, 5000);
    frame.addToColumn(30, 40, 100);
    frame.at(30, 32) = static_cast<std::uint16_t>(5000 + topBand);
    return residuals(frame, metadata)[30];
  };
  // mean (700 + b) / 8, a fifth of it (700 + b) / 40: b must reach 700 / 39 = 17.9
  EXPECT_EQ(evidence(18), 718 / 8.0);
  EXPECT_EQ(evidence(17), 0);
  EXPECT_EQ(evidence(-18), 0) << "the sign must be the same";
}

TEST(ColumnEvidence, NeedsEightSampledRows) {
  const auto evidence = [](std::int64_t height) {
    const DNGMetadata metadata = linearSensor(60, height);
    TestFrame frame(metadata, 5000);
    frame.addToColumn(30, 0, 40);
    return residuals(frame, metadata)[30];
  };
  EXPECT_EQ(evidence(65), 0);
  EXPECT_EQ(evidence(120), 0) << "seven rows: a band is empty";
  EXPECT_EQ(evidence(121), 40);
}

TEST(ColumnEvidence, SamplesPairsOfRowsOnAMosaicBelowTheMargin) {
  const auto evidence = [](std::int64_t row) {
    const DNGMetadata metadata = mosaicSensor(60, 129);  // rows 32 … 96; 96 is the last, its partner lies beyond
    TestFrame frame(metadata, 5000);
    frame.addToColumn(30, 0, 40);
    frame.at(30, row) = 4000;
    return residuals(frame, metadata)[30] != 40;
  };
  for (const std::int64_t row : {32, 33, 40, 41, 88, 89, 96})
    EXPECT_TRUE(evidence(row)) << "row " << row;
  for (const std::int64_t row : {31, 34, 39, 42, 87, 97, 98})
    EXPECT_FALSE(evidence(row)) << "row " << row;
}

TEST(ColumnEvidence, SamplesEveryEighthRowWithoutAMosaic) {
  const auto evidence = [](std::int64_t row) {
    const DNGMetadata metadata = linearSensor(60, 129);
    TestFrame frame(metadata, 5000);
    frame.addToColumn(30, 0, 40);
    frame.at(30, row) = 4000;
    return residuals(frame, metadata)[30] != 40;
  };
  for (const std::int64_t row : {32, 40, 88, 96})
    EXPECT_TRUE(evidence(row)) << "row " << row;
  for (const std::int64_t row : {24, 31, 33, 41, 95, 97, 104})
    EXPECT_FALSE(evidence(row)) << "row " << row;
}

// As worded: a residual for each sampled row, eight bands, their means sorted and averaged.
double plainEvidence(const TestFrame& frame, const DNGMetadata& metadata, std::int64_t column) {
  std::vector<double> all;
  for (std::int64_t y = 32; y < metadata.activeHeight - 32; ++y) {
    if (y % 8 != 0 && !(metadata.cfaLayout && y % 8 == 1)) continue;
    const std::int64_t index = (metadata.activeY + y) * metadata.rawWidth + metadata.activeX + column;
    all.push_back(CalibrationEngine::normalizedColumnResidual(frame.samples(), index, metadata));
  }
  std::vector<double> bands;
  for (std::size_t band = 0; band < 8; ++band) {
    double sum = 0;
    const std::size_t first = all.size() * band / 8;
    const std::size_t last = all.size() * (band + 1) / 8;
    for (std::size_t i = first; i < last; ++i)
      sum += all[i];
    bands.push_back(last > first ? sum / static_cast<double>(last - first) : 0);
  }
  std::sort(bands.begin(), bands.end());
  double sum = 0;
  for (const double band : bands)
    sum += band;
  const double mean = sum / 8;
  for (const double band : bands) {
    if (band * mean <= 0 || std::abs(band) < 0.2 * std::abs(mean)) return 0;
  }
  return mean;
}

TEST(ColumnEvidence, EqualsThePlainFormulaToTheLastBitOnAnyNumberOfThreads) {
  std::mt19937 random(5);
  for (const DNGMetadata& metadata :
       {withBorder(linearSensor(90, 331), 4, 7), withBorder(mosaicSensor(90, 331), 5, 6)}) {
    TestFrame frame(metadata, 5000);
    for (std::int64_t y = 0; y < 331; ++y) {
      for (std::int64_t x = 0; x < 90; ++x)
        frame.at(x, y) = static_cast<std::uint16_t>(5000 + x % 5 * 60 + random() % 50);
    }
    const auto found = residuals(frame, metadata);
    EXPECT_GT(std::ranges::count_if(found, [](double residual) { return residual != 0; }), 20);
    for (std::int64_t column = 8; column < 82; ++column)
      EXPECT_EQ(found[static_cast<std::size_t>(column)], plainEvidence(frame, metadata, column)) << "column " << column;
    for (const int threads : {2, 3, 16})
      EXPECT_EQ(residuals(frame, metadata, threads), found) << threads << " threads";
  }
}

}  // namespace
}  // namespace tessaly
