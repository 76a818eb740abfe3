#include "calibration/second/LineFinder.h"
#include "calibration/second/RandomPlanes.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tessaly::second {
namespace {

void addToColumn(Plane& plane, const PlaneShape& shape, std::int64_t x, ColumnRange rows, int amount) {
  for (std::int64_t y = rows.first; y < rows.last; ++y) {
    std::int16_t& value = plane[static_cast<std::size_t>(y * shape.width + x)];
    value = static_cast<std::int16_t>(value + amount);
  }
}

std::vector<std::int64_t> columnsOf(const std::vector<FoundColumn>& found) {
  std::vector<std::int64_t> columns;
  for (const FoundColumn& column : found)
    columns.push_back(column.x);
  return columns;
}

TEST(LineFinder, FindsAWeakColumnAndNothingBesideIt) {
  for (const std::int64_t step : {1, 2}) {
    const PlaneShape shape(300, 480, step);
    Plane plane = tests::randomPlane(shape, 21, 40);
    addToColumn(plane, shape, 150, {0, 480}, 25);
    const std::vector<FoundColumn> found = findLines(plane, shape, nullptr, 1);
    ASSERT_EQ(columnsOf(found), std::vector<std::int64_t>{150});
    EXPECT_TRUE(found[0].isWhole);
    EXPECT_NEAR(found[0].mean, 25, 6);
  }
}

TEST(LineFinder, FindsTheEndsOfAPartToAFewRows) {
  const PlaneShape shape(300, 640, 2);
  Plane plane = tests::randomPlane(shape, 22, 20);
  addToColumn(plane, shape, 90, {203, 640}, -40);
  addToColumn(plane, shape, 0, {0, 333}, 40);
  const std::vector<FoundColumn> found = findLines(plane, shape, nullptr, 2);
  ASSERT_EQ(columnsOf(found), (std::vector<std::int64_t>{0, 90}));
  EXPECT_LE(std::abs(found[1].firstRow - 203), 3);
  EXPECT_EQ(found[1].lastRow, 639);
  EXPECT_EQ(found[0].firstRow, 0);
  EXPECT_LE(std::abs(found[0].lastRow - 332), 3);
}

TEST(LineFinder, HearsNoEchoOfAStrongColumn) {
  const PlaneShape shape(300, 480, 2);
  Plane plane = tests::randomPlane(shape, 23, 20);
  addToColumn(plane, shape, 120, {0, 480}, 900);
  addToColumn(plane, shape, 121, {0, 480}, 900);
  EXPECT_EQ(columnsOf(findLines(plane, shape, nullptr, 1)), (std::vector<std::int64_t>{120, 121}));
}

TEST(LineFinder, LeavesOutWhatIsIgnored) {
  const PlaneShape shape(300, 480, 1);
  Plane plane = tests::randomPlane(shape, 24, 40);
  addToColumn(plane, shape, 200, {0, 480}, 25);
  std::vector<std::uint8_t> ignored(300, 0);
  ignored[200] = 1;
  EXPECT_TRUE(findLines(
                  plane, shape, [&](std::int64_t) { return ignored.data(); }, 1)
                  .empty());
}

TEST(LineFinder, FindsNothingInNoiseWhateverTheNumberOfThreads) {
  for (std::uint64_t seed = 30; seed < 36; ++seed) {
    const PlaneShape shape(400, 320, 2);
    EXPECT_TRUE(findLines(tests::randomPlane(shape, seed, 40), shape, nullptr, static_cast<int>(seed % 3 + 1)).empty());
  }
}

}  // namespace
}  // namespace tessaly::second
