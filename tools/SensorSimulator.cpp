#include "tools/SensorSimulator.h"

#include "tools/Deterministic.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace tessaly::tools {
namespace {

constexpr std::uint64_t responseKey = 0x52455350;
constexpr std::uint64_t frameKey = 0x4652414D;

/// The share of the light that the dust takes at a squared distance from its centre, 1 being the rim.
double shadow(double depth, double squaredDistance) {
  const double height = std::max(1 - squaredDistance, 0.0);
  return depth * height * height;
}

}  // namespace

/// What is the same for all samples of one frame.
struct SensorSimulator::Shot {
  const Scene& scene;
  std::uint64_t noiseKey = 0;
  double darkFactor = 0;       ///< seconds × ISO / 100
  double variancePerUnit = 0;  ///< of the photon noise
};

bool SensorDescription::isActive(std::int64_t x, std::int64_t y) const {
  return x >= activeX && x < activeX + activeWidth && y >= activeY && y < activeY + activeHeight;
}

int SensorDescription::colourAt(std::int64_t x, std::int64_t y) const {
  if (cfa.empty()) return 1;
  const auto cell = static_cast<std::size_t>(((y - activeY) & 1) * 2 + ((x - activeX) & 1));
  return static_cast<int>(std::string("RGB").find(cfa.at(cell)));
}

SensorSimulator::SensorSimulator(SensorDescription description, const PlantedDefects& defects)
    : description_(std::move(description)) {
  plant(defects);
}

void SensorSimulator::plant(const PlantedDefects& defects) {
  for (const PlantedPixel& pixel : defects.pixels)
    plantPixel(pixel);
  for (const PlantedLine& line : defects.lines)
    plantLine(line);
  for (const PlantedSpot& spot : defects.spots)
    plantSpot(spot);
  mergeDamages();
}

void SensorSimulator::plantPixel(const PlantedPixel& pixel) {
  Damage damage;
  damage.index = pixel.y * description_.width + pixel.x;
  if (pixel.kind == PlantedPixel::Kind::hot) damage.darkRate = pixel.amount;
  if (pixel.kind == PlantedPixel::Kind::dead) damage.transmission = pixel.amount;
  if (pixel.kind == PlantedPixel::Kind::stuck) damage.stuckAt = pixel.amount;
  damages_.push_back(damage);
}

void SensorSimulator::plantLine(const PlantedLine& line) {
  for (std::int64_t y = line.yStart; y <= line.yEnd; ++y) {
    for (std::int64_t x = line.x; x < line.x + line.width; ++x) {
      Damage damage;
      damage.index = y * description_.width + x;
      damage.offset = line.offset;
      damages_.push_back(damage);
    }
  }
}

void SensorSimulator::plantSpot(const PlantedSpot& spot) {
  const auto squared = [](std::int64_t distance, std::int64_t radius) {
    const double part = static_cast<double>(distance) / static_cast<double>(radius);
    return part * part;
  };
  for (std::int64_t y = spot.y - spot.radiusY; y <= spot.y + spot.radiusY; ++y) {
    for (std::int64_t x = spot.x - spot.radiusX; x <= spot.x + spot.radiusX; ++x) {
      const double distance = squared(x - spot.x, spot.radiusX) + squared(y - spot.y, spot.radiusY);
      if (distance >= 1) continue;
      Damage damage;
      damage.index = y * description_.width + x;
      damage.transmission = 1 - shadow(spot.depth, distance);
      damages_.push_back(damage);
    }
  }
}

/// A photosite that several defects cover suffers from all of them.
void SensorSimulator::mergeDamages() {
  std::stable_sort(damages_.begin(), damages_.end(),
                   [](const Damage& left, const Damage& right) { return left.index < right.index; });
  std::vector<Damage> merged;
  for (const Damage& damage : damages_) {
    if (damage.index < 0 || damage.index >= description_.width * description_.height) {
      throw std::invalid_argument("A defect outside the sensor");
    }
    if (merged.empty() || merged.back().index != damage.index) {
      merged.push_back(damage);
      continue;
    }
    merged.back().transmission *= damage.transmission;
    merged.back().offset += damage.offset;
    merged.back().darkRate += damage.darkRate;
    merged.back().stuckAt = std::max(merged.back().stuckAt, damage.stuckAt);
  }
  damages_ = std::move(merged);
}

double SensorSimulator::lightAt(const Scene& scene, std::int64_t index) const {
  const std::int64_t x = index % description_.width;
  const std::int64_t y = index / description_.width;
  if (!description_.isActive(x, y)) return 0;
  const int colour = description_.colourAt(x, y);
  const double sensitivity = description_.cfa.empty() ? 1 : description_.sensitivity[static_cast<std::size_t>(colour)];
  const std::uint64_t key = combinedKey(combinedKey(description_.seed, responseKey), static_cast<std::uint64_t>(index));
  const double response = 1 + description_.responseSpread * bell(key);
  return scene(x - description_.activeX, y - description_.activeY, colour) * sensitivity * response;
}

std::uint16_t SensorSimulator::sampleAt(const Shot& shot, const Damage& damage) const {
  const auto range = static_cast<double>(description_.range());
  const double light = lightAt(shot.scene, damage.index) * damage.transmission * range;
  const double charge = light + damage.darkRate * shot.darkFactor * range;
  const double variance = description_.readNoise * description_.readNoise + charge * shot.variancePerUnit;
  const double noise = std::sqrt(variance) * bell(combinedKey(shot.noiseKey, static_cast<std::uint64_t>(damage.index)));
  const double level = damage.stuckAt >= 0 ? damage.stuckAt * range : charge + damage.offset * range + noise;
  const double sample =
      std::clamp(static_cast<double>(description_.black) + level + 0.5, 0.0, static_cast<double>(description_.white));
  return static_cast<std::uint16_t>(sample);
}

std::vector<std::uint16_t> SensorSimulator::render(const Scene& scene, const Exposure& exposure,
                                                   std::uint64_t frameNumber, Condition condition) const {
  const double seconds = static_cast<double>(exposure.seconds.first) / static_cast<double>(exposure.seconds.second);
  const double gain = static_cast<double>(exposure.iso) / 100;
  const Shot shot{scene, combinedKey(combinedKey(description_.seed, frameKey), frameNumber), seconds * gain,
                  gain / description_.electronsPerUnit};
  std::vector<std::uint16_t> samples(static_cast<std::size_t>(description_.width * description_.height));
  Damage none;
  for (std::uint16_t& sample : samples) {
    sample = sampleAt(shot, none);
    ++none.index;
  }
  if (condition == Condition::damaged) {
    for (const Damage& damage : damages_)
      samples[static_cast<std::size_t>(damage.index)] = sampleAt(shot, damage);
  }
  return samples;
}

std::vector<std::int64_t> SensorSimulator::plantedSamples() const {
  std::vector<std::int64_t> indices;
  for (const Damage& damage : damages_)
    indices.push_back(damage.index);
  return indices;
}

DNGBuilder SensorSimulator::file(const Exposure& exposure, std::vector<std::uint16_t> samples) const {
  const SensorDescription& sensor = description_;
  DNGBuilder builder;
  builder.size(sensor.width, sensor.height).bits(sensor.bits).black(sensor.black).white(sensor.white);
  builder.activeArea(sensor.activeY, sensor.activeX, sensor.activeY + sensor.activeHeight,
                     sensor.activeX + sensor.activeWidth);
  builder.make(sensor.make).model(sensor.model).uniqueModel(sensor.model).exif(exposure.iso, exposure.seconds);
  if (!sensor.serial.empty()) builder.serial(sensor.serial);
  if (sensor.cfa.empty()) {
    builder.linear();
  } else {
    builder.cfa(sensor.cfa);
  }
  return std::move(builder.samples(std::move(samples)));
}

}  // namespace tessaly::tools
