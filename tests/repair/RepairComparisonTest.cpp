// The engine against the plain repair of ReferenceRepair, sample by sample, on random small sensors.
#include "repair/ReferenceRepair.h"
#include "repair/SmallSensor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace tessaly::tests {
namespace {

class Random {
 public:
  explicit Random(std::uint32_t seed) : engine_(seed) {}
  std::int64_t between(std::int64_t first, std::int64_t last) {
    return first + static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(last - first + 1));
  }

 private:
  std::mt19937_64 engine_;
};

void addDefects(SmallSensor& sensor, Random& random) {
  const std::int64_t w = sensor.metadata.rawWidth, h = sensor.metadata.rawHeight;
  for (std::int64_t i = random.between(0, 15); i > 0; --i) {
    sensor.profile.pixels.push_back({random.between(0, w - 1), random.between(0, h - 1), 1.0, ""});
  }
  for (std::int64_t i = random.between(0, 4); i > 0; --i) {
    const std::int64_t x = random.between(0, w - 1), y = random.between(0, h - 1);
    sensor.profile.lines.push_back(
        {x, y, random.between(y, h - 1), random.between(1, std::min(w - x, std::int64_t{4})), 1.0, ""});
  }
  for (std::int64_t i = random.between(0, 3); i > 0; --i) {
    const std::int64_t x = random.between(0, w - 1), y = random.between(0, h - 1);
    const std::int64_t rx = std::min({x, w - 1 - x, std::int64_t{9}}), ry = std::min({y, h - 1 - y, std::int64_t{9}});
    if (rx < 1 || ry < 1) continue;
    sensor.profile.spots->push_back({x, y, random.between(1, rx), random.between(1, ry), 1.0, ""});
  }
}

SmallSensor randomSensor(Random& random) {
  static const std::vector<std::vector<std::uint8_t>> bayer = {{0, 1, 1, 2}, {2, 1, 1, 0}, {1, 0, 2, 1}, {1, 2, 0, 1}};
  SmallSensor sensor(random.between(1, 90), random.between(1, 40));
  DNGMetadata& m = sensor.metadata;
  m.activeX = random.between(0, m.rawWidth - 1);
  m.activeY = random.between(0, m.rawHeight - 1);
  m.activeWidth = random.between(1, m.rawWidth - m.activeX);
  m.activeHeight = random.between(1, m.rawHeight - m.activeY);
  m.whiteLevel = random.between(0, 3) == 0 ? random.between(-5, 70000) : 65535;
  m.cfaLayout->pattern = bayer[static_cast<std::size_t>(random.between(0, 3))];
  if (random.between(0, 3) == 0) m.cfaLayout.reset();
  sensor.match();
  const std::int64_t base = random.between(0, 65535), spread = random.between(0, 1) == 0 ? 30 : 65535;
  sensor.fill([&](std::int64_t, std::int64_t) {
    return std::clamp<std::int64_t>(base + random.between(-spread, spread), 0, 65535);
  });
  addDefects(sensor, random);
  return sensor;
}

TEST(RepairComparison, EngineAndPlainRepairAgreeOnEverySampleAndCount) {
  for (std::uint32_t seed = 0; seed < 1500; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed);
    SmallSensor sensor = randomSensor(random);
    const reference::RepairedPlane plain = reference::repair(sensor.samples, sensor.metadata, sensor.profile);
    const RepairReport report = sensor.repair();
    ASSERT_EQ(report, plain.report);
    ASSERT_EQ(sensor.samples, plain.samples);
    EXPECT_EQ(report.changedSamples, report.pointSamples + report.lineSamples + report.spotSamples);
  }
}

}  // namespace
}  // namespace tessaly::tests
