#include "tools/DefectPlanting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace tessaly::tools {
namespace {

SensorDescription sensorWithSeed(std::uint64_t seed) {
  SensorDescription sensor;
  sensor.seed = seed;
  return sensor;
}

TEST(DefectPlanting, PlantsAsManyAsAsked) {
  const PlantedDefects defects = plantDefects(sensorWithSeed(1), {3, 2, 1, 4, 2, 5});
  const auto ofKind = [&defects](PlantedPixel::Kind kind) {
    return std::count_if(defects.pixels.begin(), defects.pixels.end(),
                         [kind](const PlantedPixel& pixel) { return pixel.kind == kind; });
  };
  EXPECT_EQ(ofKind(PlantedPixel::Kind::hot), 3 + 2);  // a partial column starts at a hot pixel
  EXPECT_EQ(ofKind(PlantedPixel::Kind::dead), 2);
  EXPECT_EQ(ofKind(PlantedPixel::Kind::stuck), 1);
  EXPECT_EQ(defects.lines.size(), 6U);
  EXPECT_EQ(defects.spots.size(), 5U);
}

TEST(DefectPlanting, FollowsFromTheSeed) {
  const PlantedDefects first = plantDefects(sensorWithSeed(1), {});
  const PlantedDefects again = plantDefects(sensorWithSeed(1), {});
  const PlantedDefects other = plantDefects(sensorWithSeed(2), {});
  EXPECT_EQ(first.pixels.back().x, again.pixels.back().x);
  EXPECT_EQ(first.lines.back().offset, again.lines.back().offset);
  EXPECT_NE(first.lines.front().x, other.lines.front().x);
}

TEST(DefectPlanting, KeepsEverythingInsideTheActiveAreaAndWhereItCanBeJudged) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    const SensorDescription sensor = sensorWithSeed(seed);
    const PlantedDefects defects = plantDefects(sensor, {});
    for (const PlantedPixel& pixel : defects.pixels)
      EXPECT_TRUE(sensor.isActive(pixel.x, pixel.y));
    for (const PlantedSpot& spot : defects.spots) {
      EXPECT_TRUE(sensor.isActive(spot.x - spot.radiusX, spot.y - spot.radiusY));
      EXPECT_TRUE(sensor.isActive(spot.x + spot.radiusX, spot.y + spot.radiusY));
    }
    for (const PlantedLine& line : defects.lines) {
      EXPECT_GE(line.x - sensor.activeX, 128);
      EXPECT_LE(line.x + line.width - 1 - sensor.activeX, sensor.activeWidth - 129);
      EXPECT_EQ(line.yEnd, sensor.activeY + sensor.activeHeight - 1);
      EXPECT_GE(line.yEnd - line.yStart, 129);
    }
  }
}

TEST(DefectPlanting, NoTwoPixelsOrSpotsShareAColumn) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    const PlantedDefects defects = plantDefects(sensorWithSeed(seed), {});
    std::vector<std::int64_t> columns;
    for (const PlantedPixel& pixel : defects.pixels)
      columns.push_back(pixel.x);
    for (const PlantedSpot& spot : defects.spots) {
      for (std::int64_t x = spot.x - spot.radiusX; x <= spot.x + spot.radiusX; ++x)
        columns.push_back(x);
    }
    std::sort(columns.begin(), columns.end());
    EXPECT_EQ(std::adjacent_find(columns.begin(), columns.end()), columns.end()) << "seed " << seed;
  }
}

TEST(DefectPlanting, SaysWhenThereIsNoPlaceLeft) {
  DefectCounts counts;
  counts.columns = 100;
  EXPECT_THROW((void)plantDefects(sensorWithSeed(1), counts), std::runtime_error);
}

}  // namespace
}  // namespace tessaly::tools
