#include "calibration/second/RandomPlanes.h"
#include "calibration/second/ReferenceSecondOpinion.h"
#include "calibration/second/ShadowFilter.h"
#include "calibration/second/ShadowFinder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace tessaly::second {
namespace {

CountedColumns everything(const std::vector<ColumnRange>& whole) {
  return [&whole](std::int64_t) { return std::span<const ColumnRange>(whole); };
}

void darken(Plane& plane, const PlaneShape& shape, double x, double y, double radius, double depth) {
  for (std::int64_t row = 0; row < shape.height; ++row) {
    for (std::int64_t column = 0; column < shape.width; ++column) {
      const double distance = std::hypot(static_cast<double>(column) - x, static_cast<double>(row) - y) / radius;
      const double lost = depth * std::max(1 - distance * distance, 0.0) * lightQuanta;
      std::int16_t& value = plane[static_cast<std::size_t>(row * shape.width + column)];
      value = static_cast<std::int16_t>(std::lround(value - lost));
    }
  }
}

TEST(ShadowFilter, IsThePlainRuleAtEverySample) {
  const PlaneShape shape(41, 33, 1);
  const Plane plane = tests::randomPlane(shape, 8, 500);
  for (const double radius : {1.5, 1.6, 2.3}) {
    const std::vector<float> fast = ringLessDisc(plane, shape.width, shape.height, ShadowStencil(radius), 2);
    for (std::int64_t y = 0; y < shape.height; ++y)
      for (std::int64_t x = 0; x < shape.width; ++x)
        ASSERT_NEAR(fast[static_cast<std::size_t>(y * shape.width + x)],
                    tests::plainRingLessDisc(plane, shape, x, y, radius), 0.01);
  }
}

TEST(ShadowFinder, FindsSoftShadowsOfEverySize) {
  const PlaneShape shape(420, 300, 2);
  Plane plane = tests::randomPlane(shape, 41, 60);
  darken(plane, shape, 60, 60, 5, 0.05);
  darken(plane, shape, 180, 90, 16, 0.02);
  darken(plane, shape, 320, 170, 45, 0.015);
  const std::vector<ColumnRange> whole{{0, shape.width}};
  std::vector<Shadow> found = findShadows(plane, shape, everything(whole), 1);
  measureEllipses(found, plane, shape);
  ASSERT_EQ(found.size(), 3U);
  std::sort(found.begin(), found.end(), [](const Shadow& left, const Shadow& right) { return left.x < right.x; });
  EXPECT_NEAR(found[0].x, 60, 2);
  EXPECT_NEAR(found[1].x, 180, 3);
  EXPECT_NEAR(found[1].y, 90, 3);
  EXPECT_NEAR(found[2].x, 320, 8);
  EXPECT_GT(found[2].radiusX, found[1].radiusX);
  EXPECT_GT(found[1].radiusX, found[0].radiusX);
}

TEST(ShadowFinder, FindsNothingInNoiseOrOnASlope) {
  const PlaneShape shape(420, 300, 1);
  Plane plane = tests::randomPlane(shape, 42, 60);
  for (std::size_t i = 0; i < plane.size(); ++i)
    plane[i] = static_cast<std::int16_t>(plane[i] + static_cast<int>(i % 420));
  const std::vector<ColumnRange> whole{{0, shape.width}};
  EXPECT_TRUE(findShadows(plane, shape, everything(whole), 2).empty());
}

}  // namespace
}  // namespace tessaly::second
