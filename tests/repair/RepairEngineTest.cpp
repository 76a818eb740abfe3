#include "dng/DNGError.h"
#include "repair/RepairEngine.h"
#include "repair/SmallSensor.h"

#include <gtest/gtest.h>

#include <string>

namespace tessaly::tests {
namespace {

std::string refusal(SmallSensor& sensor) {
  try {
    sensor.repair();
    return "";
  } catch (const DNGError& error) {
    return error.what();
  }
}

TEST(RepairEngine, LeavesEverySampleOfAnEmptyProfileEvenAboveWhite) {
  SmallSensor sensor(20, 10);
  sensor.metadata.whiteLevel = 500;
  const auto before = sensor.samples;
  EXPECT_EQ(sensor.repair(), RepairReport());
  EXPECT_EQ(sensor.samples, before);
}

TEST(RepairEngine, TakesAProfileThatSaysNothingOfSpotsForOneWithout) {
  SmallSensor sensor(20, 10);
  sensor.at(9, 5) = 4000;
  sensor.profile.pixels = {{9, 5, 1.0, ""}};
  sensor.profile.spots.reset();
  EXPECT_EQ(sensor.repair(), (RepairReport{1, 1, 0, 0}));
  EXPECT_EQ(sensor.at(9, 5), 1000);
}

TEST(RepairEngine, RefusesAProfileOfAnotherCameraAndTouchesNothing) {
  SmallSensor sensor(20, 10);
  sensor.profile.pixels = {{3, 3, 1.0, ""}};
  sensor.profile.cameraModel = "body";
  const auto before = sensor.samples;
  EXPECT_EQ(refusal(sensor), "Camera profile mismatch: Profile camera: body; file camera: Body");
  EXPECT_EQ(sensor.samples, before);
}

TEST(RepairEngine, RefusesAPlaneOfAnotherSizeAfterTheProfile) {
  SmallSensor sensor(20, 10);
  sensor.samples.pop_back();
  EXPECT_EQ(refusal(sensor), "Invalid DNG structure: Raw pixel count does not match the DNG metadata");
  sensor.profile.rawWidth = 21;
  EXPECT_EQ(refusal(sensor), "Camera profile mismatch: Sensor dimensions or active area differ");
}

TEST(ColumnRule, InterpolatesAColumnFromTheSameColourTwoColumnsAway) {
  SmallSensor sensor(20, 4);
  sensor.fill([](std::int64_t x, std::int64_t) { return 100 * x; });
  sensor.at(9, 1) = 60000;
  sensor.profile.lines = {{9, 0, 3, 1, 1.0, ""}};
  EXPECT_EQ(sensor.repair(), (RepairReport{4, 0, 4, 0}));
  for (std::int64_t y = 0; y < 4; ++y)
    EXPECT_EQ(sensor.at(9, y), 900);
}

TEST(ColumnRule, SkipsDefectiveNeighboursOfThreeAdjacentColumns) {
  SmallSensor sensor(24, 2);
  sensor.fill([](std::int64_t x, std::int64_t) { return x < 10 ? 600 : 1200; });
  sensor.profile.lines = {{9, 0, 1, 3, 1.0, ""}};
  sensor.repair();
  // Column 9 from 7 (600) and 13 (1200), a third of the way; 11 from the same pair, two thirds of the way.
  EXPECT_EQ(sensor.at(9, 0), 800);
  EXPECT_EQ(sensor.at(11, 0), 1000);
  // Column 10 from 8 and 12, in the middle.
  EXPECT_EQ(sensor.at(10, 0), 900);
}

TEST(ColumnRule, RoundsTheInterpolationToTheNearest) {
  SmallSensor sensor(20, 1);
  sensor.metadata.cfaLayout.reset();
  sensor.match();
  sensor.fill([](std::int64_t x, std::int64_t) { return x < 9 ? 10 : 11; });
  sensor.profile.lines = {{9, 0, 0, 1, 1.0, ""}};
  sensor.repair();
  EXPECT_EQ(sensor.at(9, 0), 11) << "10.5 rounds up";
}

TEST(ColumnRule, CopiesTheOnlyNeighbourAtTheLeftEdgeWithoutTexture) {
  SmallSensor sensor(20, 2);
  sensor.fill([](std::int64_t x, std::int64_t) { return x == 2 ? 777 : x == 4 ? 5000 : 1000; });
  sensor.profile.lines = {{0, 0, 1, 1, 1.0, ""}};
  sensor.repair();
  EXPECT_EQ(sensor.at(0, 0), 777);
  EXPECT_EQ(sensor.at(0, 1), 777);
}

TEST(ColumnRule, PutsTheTextureOfTheSidesBackLikeACheckerboard) {
  SmallSensor sensor(30, 2);
  sensor.at(10, 0) = sensor.at(10, 1) = 1100;  // left detail: two columns left of the left neighbour at 12
  sensor.at(18, 0) = sensor.at(18, 1) = 800;   // right detail
  sensor.profile.lines = {{14, 0, 1, 1, 1.0, ""}};
  sensor.repair();
  EXPECT_EQ(sensor.at(14, 0), 1100) << "column and row of one parity take the left side";
  EXPECT_EQ(sensor.at(14, 1), 800) << "of different parity the right one";
}

TEST(ColumnRule, AsksForTheTextureOfTheCleanSideOnly) {
  SmallSensor sensor(30, 2);
  sensor.at(18, 0) = 800;
  sensor.profile.lines = {{14, 0, 1, 1, 1.0, ""}};
  sensor.profile.pixels = {{8, 0, 1.0, ""}};  // the left detail needs column 8
  sensor.repair();
  EXPECT_EQ(sensor.at(14, 0), 800);
}

TEST(ColumnRule, SearchesFifteenColumnsAndNoFarther) {
  for (const std::int64_t width : {15, 16}) {
    SmallSensor sensor(40, 1);
    sensor.metadata.cfaLayout.reset();
    sensor.metadata.whiteLevel = 900;
    sensor.match();
    sensor.at(15 + 15, 0) = 500;
    sensor.profile.lines = {{0, 0, 0, 15, 1.0, ""}, {15, 0, 0, width, 1.0, ""}};
    const RepairReport report = sensor.repair();
    EXPECT_EQ(report.changedSamples, 15 + width);
    EXPECT_EQ(sensor.at(15, 0), width == 15 ? 500 : 900) << "kept, but not above white";
  }
}

TEST(SpotRule, TakesTheFlattestDirectionAndTheRowFirst) {
  SmallSensor sensor(31, 31);
  sensor.metadata.cfaLayout.reset();
  sensor.match();
  sensor.fill([](std::int64_t, std::int64_t y) { return 1000 + 10 * y; });
  sensor.profile.spots = {{{15, 15, 3, 3, 1.0, ""}}};
  const RepairReport report = sensor.repair();
  EXPECT_EQ(report, (RepairReport{29, 0, 0, 29}));
  for (std::int64_t y = 12; y <= 18; ++y)
    EXPECT_EQ(sensor.at(15, y), 1000 + 10 * y) << "rows are constant";
}

TEST(SpotRule, NearTheTopBorderOnlyTheRowDecides) {
  SmallSensor sensor(31, 20);
  sensor.metadata.cfaLayout.reset();
  sensor.match();
  sensor.fill([](std::int64_t x, std::int64_t y) { return y == 0 ? 100 * x : 7; });
  sensor.profile.spots = {{{15, 1, 3, 1, 1.0, ""}}};
  sensor.repair();
  EXPECT_EQ(sensor.at(15, 0), 1500) << "nothing lies above row 0";
}

TEST(SpotRule, CountsAPixelInsideTheEllipseAsSpotOnly) {
  SmallSensor sensor(31, 31);
  sensor.profile.spots = {{{15, 15, 2, 2, 1.0, ""}}};
  sensor.profile.pixels = {{15, 15, 1.0, ""}, {15, 15, 1.0, ""}, {3, 3, 1.0, ""}};
  EXPECT_EQ(sensor.repair(), (RepairReport{14, 1, 0, 13}));
}

TEST(PixelRule, TakesTheRowWhenTwoDirectionsAreEquallyFlat) {
  SmallSensor sensor(21, 21);
  sensor.at(8, 10) = sensor.at(12, 10) = 500;   // row
  sensor.at(10, 8) = sensor.at(10, 12) = 2000;  // column
  sensor.at(10, 10) = 60000;
  sensor.profile.pixels = {{10, 10, 1.0, ""}};
  EXPECT_EQ(sensor.repair(), (RepairReport{1, 1, 0, 0}));
  EXPECT_EQ(sensor.at(10, 10), 500);
}

TEST(PixelRule, TakesTheSmallestDifferenceAndRoundsTheMeanUp) {
  SmallSensor sensor(21, 21);
  sensor.fill([](std::int64_t x, std::int64_t y) { return 1000 + 50 * x + 20 * y; });
  sensor.at(10, 8) = 701;
  sensor.at(10, 12) = 702;
  sensor.profile.pixels = {{10, 10, 1.0, ""}};
  sensor.repair();
  EXPECT_EQ(sensor.at(10, 10), 702);
}

TEST(PixelRule, TakesTheDiagonalNeighboursOfAGreenSample) {
  SmallSensor sensor(21, 21);
  sensor.fill([](std::int64_t x, std::int64_t y) { return 1000 + 100 * x + 300 * y; });
  sensor.at(10, 10 - 1) = 3000;  // (10, 9) is green: its diagonal neighbours (9, 8) and (11, 10) are one step away
  sensor.at(9, 8) = sensor.at(11, 10) = 4321;
  sensor.profile.pixels = {{10, 9, 1.0, ""}};
  sensor.repair();
  EXPECT_EQ(sensor.at(10, 9), 4321);
}

TEST(PixelRule, DoesNotSearchPastADefectiveNeighbour) {
  SmallSensor sensor(21, 21);
  sensor.fill([](std::int64_t x, std::int64_t y) { return 1000 + 10 * x + 1000 * (y % 7); });
  sensor.at(8, 10) = 40000;
  sensor.profile.pixels = {{10, 10, 1.0, ""}, {8, 10, 1.0, ""}};
  sensor.repair();
  // The row is out. The column differs by |y 12 − y 8| = 4000, the diagonals by that and 40 more or less.
  EXPECT_EQ(sensor.at(10, 10), (1000 + 10 * 12 + 1000 * 1 + 1000 + 10 * 8 + 1000 * 5 + 1) / 2);
}

TEST(PixelRule, FallsBackToTheRowWhereNoDirectionIsLeft) {
  SmallSensor sensor(21, 1);
  sensor.metadata.cfaLayout.reset();
  sensor.match();
  sensor.fill([](std::int64_t x, std::int64_t) { return 100 * x; });
  sensor.profile.pixels = {{5, 0, 1.0, ""}, {6, 0, 1.0, ""}};
  sensor.repair();
  EXPECT_EQ(sensor.at(5, 0), 500);
  EXPECT_EQ(sensor.at(6, 0), 600);
}

TEST(RepairEngine, LimitsRebuiltSamplesToTheClampedWhiteLevel) {
  for (const auto& [white, expected] : {std::pair{70000, 65535}, {-1, 0}, {0, 0}, {65535, 65535}, {300, 300}}) {
    SmallSensor sensor(20, 5);
    sensor.metadata.whiteLevel = white;
    sensor.fill([](std::int64_t, std::int64_t) { return 65535; });
    sensor.profile.pixels = {{10, 2, 1.0, ""}};
    sensor.repair();
    EXPECT_EQ(sensor.at(10, 2), expected);
    EXPECT_EQ(sensor.at(11, 2), 65535) << "clean samples stay";
  }
}

TEST(RepairEngine, AnchorsColoursAtTheActiveAreaButNotTheParityOfTheColumnRule) {
  SmallSensor sensor(30, 5);
  sensor.metadata.activeX = 1;
  sensor.metadata.activeWidth = 29;
  sensor.match();
  // With the pattern moved by one column, (10, 2) is green: its diagonal neighbours are its nearest.
  sensor.fill([](std::int64_t x, std::int64_t y) { return 1000 + 100 * x + 300 * y; });
  sensor.at(9, 1) = sensor.at(11, 3) = 4321;
  sensor.profile.pixels = {{10, 2, 1.0, ""}};
  sensor.repair();
  EXPECT_EQ(sensor.at(10, 2), 4321);
}

}  // namespace
}  // namespace tessaly::tests
