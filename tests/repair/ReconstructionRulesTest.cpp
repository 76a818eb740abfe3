// The promise that all orders of rebuilding rest on: no rule reads a defective sample other than its own.
#include "repair/DefectMap.h"
#include "repair/Mosaics.h"
#include "repair/ReconstructionRules.h"
#include "repair/SmallSensor.h"

#include <gtest/gtest.h>

#include <random>

namespace tessaly {
namespace {

using Samples16 = std::vector<std::uint16_t>;

/// A sensor whose defects are close together, of all kinds.
tests::SmallSensor crowdedSensor(std::mt19937& random) {
  const auto draw = [&](std::int64_t below) { return static_cast<std::int64_t>(random()) % below; };
  tests::SmallSensor sensor(40 + draw(30), 40 + draw(30));
  const std::int64_t width = sensor.metadata.rawWidth, height = sensor.metadata.rawHeight;
  if (draw(3) == 0) sensor.metadata.cfaLayout.reset();
  sensor.match();
  sensor.fill([&](std::int64_t, std::int64_t) { return draw(65536); });
  for (std::int64_t i = draw(300); i > 0; --i)
    sensor.profile.pixels.push_back({draw(width), draw(height), 1.0, ""});
  for (std::int64_t i = draw(6); i > 0; --i)
    sensor.profile.lines.push_back({draw(width - 4), draw(height / 2), height / 2, 1 + draw(4), 1.0, ""});
  for (std::int64_t i = draw(6); i > 0; --i)
    sensor.profile.spots->push_back({8 + draw(width - 16), 8 + draw(height - 16), 1 + draw(8), 1 + draw(8), 1.0, ""});
  return sensor;
}

/// The samples with all defective ones replaced.
Samples16 spoilt(const tests::SmallSensor& sensor, const DefectMap& defects, std::uint16_t value) {
  Samples16 samples = sensor.samples;
  const PlaneView plane(samples, sensor.metadata);
  defects.all.forEach([&](std::int64_t x, std::int64_t y) { plane.at(x, y) = value; });
  return samples;
}

template <typename Rule>
void expectTheSameAnswer(const tests::SmallSensor& sensor, const DefectMap& defects, const SampleMask& samples,
                         Rule rule) {
  Samples16 dark = spoilt(sensor, defects, 0), bright = spoilt(sensor, defects, 65535);
  const PlaneView darkPlane(dark, sensor.metadata), brightPlane(bright, sensor.metadata);
  const MosaicColours colours(sensor.metadata);
  const PlaneMosaic inDark(darkPlane, sensor.metadata, colours, defects.all);
  const PlaneMosaic inBright(brightPlane, sensor.metadata, colours, defects.all);
  samples.forEach([&](std::int64_t x, std::int64_t y) {
    brightPlane.at(x, y) = darkPlane.at(x, y);  // its own value counts where it is kept
    EXPECT_EQ(rule(inDark, x, y), rule(inBright, x, y)) << x << ", " << y;
    brightPlane.at(x, y) = 65535;
  });
}

TEST(ReconstructionRules, ReadNoOtherDefectiveSample) {
  std::mt19937 random(7);
  for (int i = 0; i < 200; ++i) {
    const tests::SmallSensor sensor = crowdedSensor(random);
    const DefectMap defects(sensor.profile, sensor.metadata.rawWidth, sensor.metadata.rawHeight);
    expectTheSameAnswer(sensor, defects, defects.lines, rebuildLineSample<PlaneMosaic>);
    expectTheSameAnswer(sensor, defects, defects.spots, rebuildSpotSample<PlaneMosaic>);
    expectTheSameAnswer(sensor, defects, defects.points, rebuildPointSample<PlaneMosaic>);
    ASSERT_FALSE(HasFailure()) << i;
  }
}

}  // namespace
}  // namespace tessaly
