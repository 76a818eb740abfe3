#include "calibration/TestSensor.h"
#include "calibration/columns/ColumnResidual.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace tessaly {
namespace {

using CalibrationEngine::normalizedColumnResidual;
using tests::linearSensor;
using tests::mosaicSensor;

// One row of a mosaic; the sample at column 10 has its neighbours at 4, 6, 8 and 12, 14, 16.
struct MosaicRow {
  DNGMetadata metadata = mosaicSensor(21, 1);
  std::vector<std::uint16_t> samples = std::vector<std::uint16_t>(21, 1000);

  MosaicRow& pair(std::int64_t offset, std::uint16_t left, std::uint16_t right) {
    samples[static_cast<std::size_t>(10 - offset)] = left;
    samples[static_cast<std::size_t>(10 + offset)] = right;
    return *this;
  }

  [[nodiscard]] double residual(std::int64_t column = 10) const {
    return normalizedColumnResidual(samples, column, metadata);
  }
};

TEST(ColumnResidual, IsTheDifferenceFromTheMiddlePairWhenAllAgree) {
  MosaicRow row;
  row.pair(2, 1000, 1010).pair(4, 1000, 1020).pair(6, 1000, 1000);
  EXPECT_EQ(row.residual(), -5);
}

TEST(ColumnResidual, UsesTheMeanOfTheTwoPairsThatAgree) {
  MosaicRow row;
  EXPECT_EQ(row.pair(2, 1000, 1000).pair(4, 1010, 1011).pair(6, 3000, 3000).residual(), 1000 - 1005.25);
  EXPECT_EQ(row.pair(2, 0, 0).pair(4, 1010, 1011).pair(6, 1000, 1000).residual(), 1000 - 1005.25);
}

TEST(ColumnResidual, UsesTheMiddlePairWhenNoOtherAgrees) {
  MosaicRow row;
  EXPECT_EQ(row.pair(2, 500, 500).pair(4, 1001, 1002).pair(6, 2000, 2000).residual(), -1.5);
}

// 1 % of the range of 16163 is 161.63.
TEST(ColumnResidual, CountsAPairWithinOnePercentOfTheRange) {
  MosaicRow row;
  row.pair(2, 1000, 1000).pair(6, 3000, 3000);
  EXPECT_EQ(row.pair(4, 1161, 1162).residual(), 1000 - 1080.75) << "161.5 apart: they agree";
  EXPECT_EQ(row.pair(4, 1162, 1162).residual(), 1000 - 1162.0) << "162 apart";
}

TEST(ColumnResidual, CountsAPairAtExactlyTheTolerance) {
  MosaicRow row;
  row.metadata.whiteLevel = 10000;  // tolerance 100
  row.pair(2, 1000, 1000).pair(4, 1100, 1100).pair(6, 3000, 3000);
  EXPECT_DOUBLE_EQ(row.residual(), -50 * 16163 / 10000.0);
}

TEST(ColumnResidual, IsInUnitsOfTheReferenceRange) {
  MosaicRow row;
  row.samples[10] = 1003;
  row.metadata.blackLevel = 100;
  row.metadata.whiteLevel = 1100;
  EXPECT_EQ(row.residual(), 3.0 * 16163 / 1000);
}

TEST(ColumnResidual, StaysWithin256) {
  MosaicRow row;
  row.samples[10] = 1256;
  EXPECT_EQ(row.residual(), 256);
  row.samples[10] = 1257;
  EXPECT_EQ(row.residual(), 256);
  row.samples[10] = 0;
  EXPECT_EQ(row.residual(), -256);
}

TEST(ColumnResidual, LooksAtDistancesThreeFiveAndSevenWithoutAMosaic) {
  const DNGMetadata metadata = linearSensor(15, 1);
  std::vector<std::uint16_t> samples(15, 1000);
  for (const std::size_t near : {1U, 2U, 4U, 6U}) {
    samples[7 - near] = 9000;
    samples[7 + near] = 9000;
  }
  EXPECT_EQ(normalizedColumnResidual(samples, 7, metadata), 0);
  samples[7 - 3] = 1020;
  samples[7 - 5] = 1040;
  samples[7 - 7] = 1060;
  EXPECT_EQ(normalizedColumnResidual(samples, 7, metadata), -20);
}

TEST(ColumnResidual, UsesTwoPairsNearTheBorderAndIsZeroWithOne) {
  MosaicRow row;
  row.samples.assign(21, 1000);
  row.samples[5] = 1050;  // pairs at 2 and 4 exist, at 6 not
  row.samples[3] = 1020;
  EXPECT_EQ(row.residual(5), 1050 - (1010 + 1000) / 2.0);
  row.samples[3] = 1000;
  row.samples[4] = 1100;  // pair at 2 only
  EXPECT_EQ(row.residual(3), 0);
  EXPECT_EQ(row.residual(1), 0);
  EXPECT_EQ(row.residual(20), 0);
}

TEST(ColumnResidual, TakesTheUpperOfTwoPairsForTheMiddleWhenTheyDisagree) {
  MosaicRow row;
  row.samples.assign(21, 1000);
  row.samples[1] = 1400;  // of column 5 the pair at 4: mean 1200; the pair at 2: mean 1000
  EXPECT_EQ(row.residual(5), -200);
}

TEST(ColumnResidual, KeepsToTheRowOfTheSample) {
  DNGMetadata metadata = mosaicSensor(15, 3);
  std::vector<std::uint16_t> samples(45, 1000);
  for (std::size_t column = 0; column < 15; ++column) {
    samples[column] = 5000;
    samples[30 + column] = 5000;
  }
  for (const std::int64_t column : {0, 3, 7, 11, 14})
    EXPECT_EQ(normalizedColumnResidual(samples, 15 + column, metadata), 0) << "column " << column;
}

TEST(ColumnResidual, SurvivesASignalRangeOfOne) {
  MosaicRow row;
  row.metadata.blackLevel = 65534;
  row.metadata.whiteLevel = 65535;
  row.samples[10] = 1001;
  EXPECT_EQ(row.residual(), 256);
}

// The loops over rows work in whole numbers; they must give what the plain formula gives, to the last bit.
TEST(ColumnResidual, IsTheSameInWholeNumbersAsByTheFormula) {
  std::mt19937 random(11);
  for (int repetition = 0; repetition < 400; ++repetition) {
    DNGMetadata metadata = repetition % 2 == 0 ? mosaicSensor(77, 1) : linearSensor(77, 1);
    metadata.whiteLevel = 1 + static_cast<std::int64_t>(random() % 65535);
    metadata.blackLevel = static_cast<std::int64_t>(random()) % metadata.whiteLevel;
    const std::uint32_t spread = 1U << (random() % 17);
    std::vector<std::uint16_t> samples;
    for (int i = 0; i < 77; ++i)
      samples.push_back(static_cast<std::uint16_t>(random() % spread));
    const ResidualScale scale(metadata);
    std::vector<double> sums(77 - 16, 0.25);
    addResiduals(samples.data() + 8, scale, sums);
    for (std::int64_t column = 8; column < 69; ++column) {
      const double expected = normalizedColumnResidual(samples, column, metadata);
      ASSERT_EQ(residualAt(samples.data() + column, scale), expected) << "column " << column;
      ASSERT_EQ(sums[static_cast<std::size_t>(column - 8)], 0.25 + expected) << "column " << column;
    }
  }
}

}  // namespace
}  // namespace tessaly
