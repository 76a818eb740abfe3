#include "tools/DefectPlanting.h"
#include "tools/SensorSimulator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace tessaly::tools {
namespace {

using Samples = std::vector<std::uint16_t>;

constexpr Exposure shortExposure{100, {1, 100}};
constexpr Exposure longExposure{400, {1, 1}};

SensorDescription smallSensor() {
  SensorDescription sensor;
  sensor.width = 120;
  sensor.height = 80;
  sensor.activeX = 8;
  sensor.activeY = 4;
  sensor.activeWidth = 108;
  sensor.activeHeight = 72;
  return sensor;
}

Scene evenLight(double level) {
  return [level](std::int64_t, std::int64_t, int) { return level; };
}

SensorSimulator sensorWith(PlantedDefects defects) {
  return {smallSensor(), defects};
}

std::int64_t indexOf(std::int64_t x, std::int64_t y) {
  return y * smallSensor().width + x;
}

/// Damaged minus undamaged at one position.
int damageAt(const SensorSimulator& sensor, const Scene& scene, const Exposure& exposure, std::int64_t x,
             std::int64_t y) {
  const auto index = static_cast<std::size_t>(indexOf(x, y));
  return sensor.render(scene, exposure, 1, Condition::damaged)[index] -
         sensor.render(scene, exposure, 1, Condition::undamaged)[index];
}

double meanOf(const Samples& samples, const SensorDescription& sensor, bool active, int colour = -1) {
  double sum = 0;
  double count = 0;
  for (std::int64_t i = 0; i < sensor.width * sensor.height; ++i) {
    const std::int64_t x = i % sensor.width;
    const std::int64_t y = i / sensor.width;
    if (sensor.isActive(x, y) != active || (colour >= 0 && sensor.colourAt(x, y) != colour)) continue;
    sum += samples[static_cast<std::size_t>(i)];
    ++count;
  }
  return sum / count;
}

TEST(SensorSimulator, RendersTheSameFrameEveryTimeAndEverywhere) {
  const SensorSimulator sensor = sensorWith({});
  const Samples frame = sensor.render(evenLight(0.5), shortExposure, 7, Condition::damaged);
  EXPECT_EQ(frame, sensor.render(evenLight(0.5), shortExposure, 7, Condition::damaged));
  const Samples firstActive(frame.begin() + indexOf(8, 4), frame.begin() + indexOf(14, 4));
  EXPECT_EQ(firstActive, (Samples{1402, 2163, 1400, 2170, 1398, 2182}));
}

TEST(SensorSimulator, FramesAndBodiesHaveNoiseOfTheirOwn) {
  const SensorSimulator sensor = sensorWith({});
  SensorDescription other = smallSensor();
  other.seed = 2;
  const Samples frame = sensor.render(evenLight(0.5), shortExposure, 1, Condition::undamaged);
  EXPECT_NE(frame, sensor.render(evenLight(0.5), shortExposure, 2, Condition::undamaged));
  EXPECT_NE(frame, SensorSimulator(other, {}).render(evenLight(0.5), shortExposure, 1, Condition::undamaged));
}

TEST(SensorSimulator, DamagedDiffersFromUndamagedOnlyAtPlantedSamples) {
  SensorDescription description;
  description.seed = 3;
  const SensorSimulator sensor(description, plantDefects(description, {}));
  const Scene scene = photographs(description.activeWidth, description.activeHeight)[5].scene;
  const Samples undamaged = sensor.render(scene, longExposure, 1, Condition::undamaged);
  const Samples damaged = sensor.render(scene, longExposure, 1, Condition::damaged);
  const std::vector<std::int64_t> planted = sensor.plantedSamples();
  std::vector<std::int64_t> different;
  for (std::size_t i = 0; i < damaged.size(); ++i) {
    if (damaged[i] != undamaged[i]) different.push_back(static_cast<std::int64_t>(i));
  }
  EXPECT_TRUE(std::includes(planted.begin(), planted.end(), different.begin(), different.end()));
  EXPECT_GT(different.size(), planted.size() * 9 / 10);
}

TEST(SensorSimulator, BorderGetsNoLight) {
  const SensorSimulator sensor = sensorWith({});
  const Samples frame = sensor.render(evenLight(0.5), shortExposure, 1, Condition::undamaged);
  EXPECT_NEAR(meanOf(frame, smallSensor(), false), 256, 0.2);
}

TEST(SensorSimulator, ColoursSeeWhatTheirFiltersLetThrough) {
  const SensorSimulator sensor = sensorWith({});
  const Samples frame = sensor.render(evenLight(0.5), shortExposure, 1, Condition::undamaged);
  EXPECT_NEAR(meanOf(frame, smallSensor(), true, 0), 256 + 3839 * 0.5 * 0.60, 2);
  EXPECT_NEAR(meanOf(frame, smallSensor(), true, 1), 256 + 3839 * 0.5, 2);
  EXPECT_NEAR(meanOf(frame, smallSensor(), true, 2), 256 + 3839 * 0.5 * 0.75, 2);
}

TEST(SensorSimulator, ALinearSensorHasOneColour) {
  SensorDescription description = smallSensor();
  description.cfa = "";
  const Samples frame = SensorSimulator(description, {}).render(evenLight(0.5), shortExposure, 1, Condition::damaged);
  EXPECT_NEAR(meanOf(frame, description, true), 256 + 3839 * 0.5, 2);
}

TEST(SensorSimulator, TheMosaicIsAnchoredAtTheActiveArea) {
  SensorDescription description = smallSensor();
  description.activeX = 7;
  description.cfa = "GRBG";
  EXPECT_EQ(description.colourAt(7, 4), 1);
  EXPECT_EQ(description.colourAt(8, 4), 0);
  EXPECT_EQ(description.colourAt(7, 5), 2);
  EXPECT_EQ(description.colourAt(8, 5), 1);
}

TEST(SensorSimulator, NoiseInTheDarkIsReadNoise) {
  const Samples frame = sensorWith({}).render(darkness(), shortExposure, 1, Condition::undamaged);
  double squares = 0;
  for (const std::uint16_t sample : frame)
    squares += (sample - 256.0) * (sample - 256.0);
  // Rounding to whole units adds a variance of 1/12.
  EXPECT_NEAR(squares / static_cast<double>(frame.size()), 1.5 * 1.5 + 1.0 / 12, 0.1);
}

TEST(SensorSimulator, AHotPixelGainsWithTimeAndGainInLightAndDark) {
  const SensorSimulator sensor = sensorWith({{{50, 40, PlantedPixel::Kind::hot, 0.05}}, {}, {}});
  EXPECT_NEAR(damageAt(sensor, darkness(), {100, {1, 1}}, 50, 40), 3839 * 0.05, 12);
  EXPECT_NEAR(damageAt(sensor, darkness(), {400, {1, 1}}, 50, 40), 3839 * 0.2, 40);
  EXPECT_NEAR(damageAt(sensor, evenLight(0.3), {100, {2, 1}}, 50, 40), 3839 * 0.1, 30);
}

TEST(SensorSimulator, ADeadPixelSeesLittleLight) {
  const SensorSimulator sensor = sensorWith({{{50, 40, PlantedPixel::Kind::dead, 0.1}}, {}, {}});
  const Samples frame = sensor.render(evenLight(0.5), shortExposure, 1, Condition::damaged);
  const double colourLight =
      3839 * 0.5 * smallSensor().sensitivity.at(static_cast<std::size_t>(smallSensor().colourAt(50, 40)));
  EXPECT_NEAR(frame[static_cast<std::size_t>(indexOf(50, 40))], 256 + 0.1 * colourLight, 20);
  EXPECT_EQ(damageAt(sensor, darkness(), shortExposure, 50, 40), 0);
}

TEST(SensorSimulator, AStuckPixelAlwaysReadsTheSame) {
  const SensorSimulator sensor = sensorWith({{{50, 40, PlantedPixel::Kind::stuck, 0.9}}, {}, {}});
  const auto index = static_cast<std::size_t>(indexOf(50, 40));
  const std::uint16_t level = 256 + 3455;  // 0.9 × 3839 = 3455.1
  EXPECT_EQ(sensor.render(darkness(), shortExposure, 1, Condition::damaged)[index], level);
  EXPECT_EQ(sensor.render(evenLight(0.5), longExposure, 2, Condition::damaged)[index], level);
}

TEST(SensorSimulator, AColumnIsShiftedFromItsFirstToItsLastRowOnly) {
  const SensorSimulator sensor = sensorWith({{}, {{60, 20, 50, 2, 0.01}}, {}});
  const auto shiftAt = [&sensor](std::int64_t x, std::int64_t y) {
    return damageAt(sensor, evenLight(0.3), shortExposure, x, y);
  };
  EXPECT_EQ(shiftAt(60, 19), 0);
  EXPECT_NEAR(shiftAt(60, 20), 38.39, 1);
  EXPECT_NEAR(shiftAt(61, 50), 38.39, 1);
  EXPECT_EQ(shiftAt(61, 51), 0);
  EXPECT_EQ(shiftAt(59, 30), 0);
  EXPECT_EQ(shiftAt(62, 30), 0);
}

TEST(SensorSimulator, ASpotIsDarkestInTheCentreAndEndsAtItsEllipse) {
  const SensorSimulator sensor = sensorWith({{}, {}, {{60, 40, 6, 4, 0.5}}});
  const auto lossAt = [&sensor](std::int64_t x, std::int64_t y) {
    return -damageAt(sensor, evenLight(0.5), shortExposure, x, y);
  };
  EXPECT_GT(lossAt(60, 40), lossAt(62, 40));
  EXPECT_GT(lossAt(62, 40), lossAt(64, 40));
  EXPECT_GT(lossAt(60, 42), 0);
  EXPECT_EQ(lossAt(66, 40), 0);
  EXPECT_EQ(lossAt(60, 44), 0);
  EXPECT_EQ(lossAt(65, 43), 0);
}

TEST(SensorSimulator, APhotositeWithTwoDefectsIsPlantedOnce) {
  const SensorSimulator sensor = sensorWith({{{60, 30, PlantedPixel::Kind::hot, 0.02}}, {{60, 30, 31, 1, 0.01}}, {}});
  EXPECT_EQ(sensor.plantedSamples(), (std::vector<std::int64_t>{indexOf(60, 30), indexOf(60, 31)}));
  EXPECT_NEAR(damageAt(sensor, darkness(), {100, {1, 1}}, 60, 30), 3839 * 0.03, 10);
}

TEST(SensorSimulator, RefusesDefectsOutsideTheSensor) {
  EXPECT_THROW(sensorWith({{{5, 80, PlantedPixel::Kind::hot, 1}}, {}, {}}), std::invalid_argument);
}

TEST(SensorSimulator, SamplesNeverLeaveBlackToWhite) {
  const Samples frame = sensorWith({}).render(evenLight(2), longExposure, 1, Condition::undamaged);
  EXPECT_EQ(*std::max_element(frame.begin(), frame.end()), 4095);
}

}  // namespace
}  // namespace tessaly::tools
