#include "tools/SensorBody.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tessaly::tools {
namespace {

BodyDescription small() {
  BodyDescription body;
  body.activeWidth = 160;
  body.activeHeight = 120;
  body.cfa.clear();
  return body;
}

struct Moments {
  double mean = 0;
  double variance = 0;
};

/// Of the difference of two frames, where whatever is fixed cancels; half of it is one frame's.
Moments momentsOf(const std::vector<std::uint16_t>& first, const std::vector<std::uint16_t>& second,
                  const BodyDescription& body) {
  Moments moments;
  int count = 0;
  for (std::int64_t y = body.top + 50; y < body.top + 70; ++y) {
    for (std::int64_t x = body.left + 70; x < body.left + 90; ++x) {
      const auto i = static_cast<std::size_t>(y * body.width() + x);
      const double difference = static_cast<double>(first[i]) - static_cast<double>(second[i]);
      moments.mean += static_cast<double>(first[i]);
      moments.variance += difference * difference / 2;
      ++count;
    }
  }
  return {moments.mean / count, moments.variance / count};
}

TEST(SensorBody, HasPhotonNoiseOfItsFullWell) {
  const BodyDescription description = small();
  const SensorBody body(description, {});
  BodyExposure flat{100, {1, 30}, 0.5, 16};
  const Moments moments = momentsOf(body.render(flat, 1), body.render(flat, 2), description);
  const double electrons = 0.5 * description.fullWell;
  const double unitsOfElectron = description.span() / description.fullWell;
  EXPECT_NEAR(moments.mean, static_cast<double>(description.black) + 0.5 * description.span(), 250);
  // The brightness of frames differs by up to 2 %, which adds to the difference.
  EXPECT_GT(moments.variance, 0.7 * electrons * unitsOfElectron * unitsOfElectron);
  EXPECT_LT(moments.variance, 4 * electrons * unitsOfElectron * unitsOfElectron + 12000);
}

TEST(SensorBody, IsDarkUnderItsMaskAndWithoutLight) {
  const BodyDescription description = small();
  const SensorBody body(description, {});
  const auto flat = body.render({100, {1, 30}, 0.5, 16}, 1);
  EXPECT_NEAR(flat[0], static_cast<double>(description.black), 12);
  const auto dark = body.render({100, {1, 30}}, 2);
  EXPECT_NEAR(dark[static_cast<std::size_t>(80 * description.width() + 100)], static_cast<double>(description.black),
              12);
}

TEST(SensorBody, RepeatsItself) {
  const SensorBody body(small(), plantBodyDefects(160, 120, BodyDefectCounts::of(160, 120), 5));
  EXPECT_EQ(body.render({400, {1, 4}}, 3), body.render({400, {1, 4}}, 3));
  EXPECT_NE(body.render({400, {1, 4}}, 3), body.render({400, {1, 4}}, 4));
}

TEST(BodyDust, IsWiderAndShallowerAtALargerAperture) {
  const BodyDust dust{0, 0, 4, 1};
  EXPECT_NEAR(BodyDust::pupil(16), 9.375, 1e-9);
  EXPECT_NEAR(dust.depth(16), 16 / (9.375 * 9.375), 1e-9);
  EXPECT_LT(dust.depth(5.6), dust.depth(16));
  EXPECT_GT(dust.shadowRadius(5.6), dust.shadowRadius(16));
  EXPECT_EQ(dust.transmission(dust.shadowRadius(16), 16), 1);
  EXPECT_GT(dust.transmission(10, 16), dust.transmission(2, 16));
}

TEST(BodyDust, HidesHalfOfTheLightWhereHalfOfItLiesInThePupil) {
  const BodyDust dust{0, 0, 1000, 1};
  EXPECT_NEAR(dust.transmission(1000, 16), 0.5, 0.01);
}

TEST(BodyDefects, AreOfEveryStrength) {
  const BodyDefects defects = plantBodyDefects(2000, 1500, BodyDefectCounts::of(2000, 1500), 9);
  int weak = 0;
  int strong = 0;
  for (const BodyLine& line : defects.lines) {
    weak += line.strength < 3 ? 1 : 0;
    strong += line.strength > 20 ? 1 : 0;
    EXPECT_LT(line.yStart, line.yEnd);
  }
  EXPECT_GT(weak, 3);
  EXPECT_GT(strong, 3);
  EXPECT_FALSE(defects.dust.empty());
  EXPECT_FALSE(defects.specks.empty());
}

}  // namespace
}  // namespace tessaly::tools
