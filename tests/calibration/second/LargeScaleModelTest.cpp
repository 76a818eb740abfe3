#include "calibration/second/LargeScaleModel.h"
#include "tools/Deterministic.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tessaly::second {
namespace {

/// A plane that rises evenly, each phase on a level of its own.
std::vector<std::uint16_t> slope(const PlaneShape& shape) {
  std::vector<std::uint16_t> samples(shape.count());
  for (std::int64_t y = 0; y < shape.height; ++y)
    for (std::int64_t x = 0; x < shape.width; ++x)
      samples[static_cast<std::size_t>(y * shape.width + x)] =
          static_cast<std::uint16_t>(1000 + 2 * x + 3 * y + 500 * (x % shape.step));
  return samples;
}

void expectModelOf(const std::vector<std::uint16_t>& samples, const BlockGrid& grid) {
  const PlaneShape& shape = grid.shape();
  const BlockValues medians = blockMedians({samples.data(), shape.width}, grid, 2);
  ModelRows rows(grid, medians);
  for (std::int64_t y = 0; y < shape.height; y += 7) {
    const float* row = rows.row(y);
    for (std::int64_t x = 0; x < shape.width; ++x) {
      ASSERT_NEAR(row[x], samples[static_cast<std::size_t>(y * shape.width + x)], 6) << x << ", " << y;
      ASSERT_NEAR(row[x], modelAt(grid, medians, x, y), 0.05) << x << ", " << y;
    }
  }
}

TEST(LargeScaleModel, ContinuesASlopeToTheBordersOfEachPhase) {
  for (const std::int64_t step : {1, 2}) {
    const PlaneShape shape(301, 205, step);
    expectModelOf(slope(shape), BlockGrid(shape, 32));
  }
}

TEST(LargeScaleModel, OfOneBlockIsItsMedian) {
  const PlaneShape shape(40, 30, 2);
  const std::vector<std::uint16_t> samples(shape.count(), 700);
  const BlockGrid grid(shape, 64);
  EXPECT_EQ(grid.blocks(), 1U);
  expectModelOf(samples, grid);
}

TEST(LargeScaleModel, TakesTheMiddleOfTheValues) {
  std::vector<std::uint16_t> values;
  for (std::uint64_t i = 0; i < 4097; ++i)
    values.push_back(static_cast<std::uint16_t>(tools::uniform(i) * 60000));
  const float median = groupedMedian(values);
  std::sort(values.begin(), values.end());
  EXPECT_NEAR(median, values[2048], 0.51);
  EXPECT_EQ(groupedMedian({}), 0);
  EXPECT_NEAR(groupedMedian(std::vector<std::uint16_t>(9, 65535)), 65535, 0.01);
}

TEST(LargeScaleModel, GivesEveryRowAndColumnToOneBlock) {
  const PlaneShape shape(301, 205, 2);
  const BlockGrid grid(shape, 32);
  std::int64_t columns = 0;
  for (std::int64_t column = 0; column < grid.columns(); ++column) {
    EXPECT_EQ(grid.blockColumns(column).first, columns);
    columns = grid.blockColumns(column).last;
  }
  EXPECT_EQ(columns, shape.width);
  EXPECT_EQ(grid.blockRow(0), 0);
  EXPECT_EQ(grid.blockRow(shape.height - 1), grid.rows() - 1);
}

}  // namespace
}  // namespace tessaly::second
