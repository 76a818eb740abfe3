// The defects of a few rows against those of the whole plane.
#include "repair/DefectMap.h"
#include "repair/DefectRows.h"
#include "repair/SmallSensor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tessaly {
namespace {

class DefectRowsOfASensor : public testing::TestWithParam<int> {
 protected:
  std::int64_t draw(std::int64_t below) { return static_cast<std::int64_t>(random()) % below; }

  void addManyDefects() {
    const std::int64_t width = sensor.metadata.rawWidth, height = sensor.metadata.rawHeight;
    for (std::int64_t i = draw(200); i > 0; --i)
      sensor.profile.pixels.push_back({draw(width), draw(height), 1.0, ""});
    for (std::int64_t i = draw(8); i > 0; --i) {
      const std::int64_t first = draw(height);
      sensor.profile.lines.push_back({draw(width - 5), first, first + draw(height - first), 1 + draw(5), 1.0, ""});
    }
    for (std::int64_t i = draw(8); i > 0; --i) {
      const std::int64_t x = 1 + draw(width - 2), y = 1 + draw(height - 2);
      const std::int64_t widest = std::min({x, width - 1 - x, std::int64_t{30}});
      const std::int64_t highest = std::min({y, height - 1 - y, std::int64_t{30}});
      sensor.profile.spots->push_back({x, y, 1 + draw(widest), 1 + draw(highest), 1.0, ""});
    }
  }

  std::mt19937 random{static_cast<unsigned>(GetParam())};
  tests::SmallSensor sensor{97, 83};
};

TEST_P(DefectRowsOfASensor, AreThoseOfThePlane) {
  addManyDefects();
  const DefectMap plane(sensor.profile, sensor.metadata.rawWidth, sensor.metadata.rawHeight);
  const std::int64_t reach = draw(10), most = 1 + draw(30);
  DefectRows rows(sensor.profile, sensor.metadata, reach, most);
  for (SliceRows slice; slice.last < sensor.metadata.rawHeight;) {
    slice = {slice.last, std::min(slice.last + 1 + draw(most), sensor.metadata.rawHeight)};
    rows.moveTo(slice);
    const std::int64_t bottom = std::min(slice.last + reach, sensor.metadata.rawHeight);
    for (std::int64_t y = std::max<std::int64_t>(slice.first - reach, 0); y < bottom; ++y) {
      for (std::int64_t x = 0; x < sensor.metadata.rawWidth; ++x) {
        ASSERT_EQ(rows.contains(x, y), plane.all.contains(x, y)) << x << ", " << y;
        ASSERT_EQ(rows.isOnLine(x, y), plane.lines.contains(x, y)) << x << ", " << y;
        ASSERT_EQ(rows.isOnSpot(x, y), plane.spots.contains(x, y)) << x << ", " << y;
      }
    }
  }
  EXPECT_EQ(rows.report(),
            (RepairReport{plane.all.count(), plane.points.count(), plane.lines.count(), plane.spots.count()}));
}

INSTANTIATE_TEST_SUITE_P(Random, DefectRowsOfASensor, testing::Range(0, 40));

TEST(DefectRows, VisitCoveredSamplesByRowThenColumn) {
  tests::SmallSensor sensor(20, 10);
  sensor.profile.pixels = {{7, 3, 1.0, ""}, {2, 3, 1.0, ""}, {5, 1, 1.0, ""}, {9, 6, 1.0, ""}};
  DefectRows rows(sensor.profile, sensor.metadata, 2, 4);
  rows.moveTo({0, 4});
  std::vector<std::pair<std::int64_t, std::int64_t>> visited;
  rows.forEach({0, 4}, [&](std::int64_t x, std::int64_t y) { visited.emplace_back(x, y); });
  EXPECT_EQ(visited, (std::vector<std::pair<std::int64_t, std::int64_t>>{{5, 1}, {2, 3}, {7, 3}}));
}

}  // namespace
}  // namespace tessaly
