#include "tools/TruthProfile.h"

#include "tools/Deterministic.h"

#include <string>

namespace tessaly::tools {
namespace {

DNGMetadata metadataOf(const SensorDescription& sensor) {
  DNGMetadata metadata;
  metadata.sourceEncoding.emplace();
  metadata.sourceEncoding->activeArea = {sensor.activeX, sensor.activeY, sensor.activeWidth, sensor.activeHeight};
  if (!sensor.serial.empty()) metadata.cameraSerial = sensor.serial;
  metadata.make = sensor.make;
  metadata.model = sensor.model;
  metadata.rawWidth = sensor.width;
  metadata.rawHeight = sensor.height;
  metadata.activeX = sensor.activeX;
  metadata.activeY = sensor.activeY;
  metadata.activeWidth = sensor.activeWidth;
  metadata.activeHeight = sensor.activeHeight;
  if (!sensor.cfa.empty()) {
    CFALayout layout{2, 2, {}};
    for (const char colour : sensor.cfa)
      layout.pattern.push_back(colour == 'R' ? 0 : colour == 'G' ? 1 : 2);
    metadata.cfaLayout = layout;
  }
  return metadata;
}

std::string reasonFor(PlantedPixel::Kind kind) {
  switch (kind) {
    case PlantedPixel::Kind::hot:
      return "Hot pixel";
    case PlantedPixel::Kind::dead:
      return "Dead pixel";
    case PlantedPixel::Kind::stuck:
      return "Stuck pixel";
  }
  return {};
}

UUID idFromSeed(std::uint64_t seed) {
  UUID id;
  for (std::size_t i = 0; i < id.bytes.size(); ++i) {
    id.bytes[i] = static_cast<std::uint8_t>(scrambled(combinedKey(seed, i)) & 0xFF);
  }
  id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x40);  // a version 4 identifier by its form
  id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80);
  return id;
}

}  // namespace

CameraProfile truthProfile(const SensorDescription& sensor, const PlantedDefects& defects) {
  CameraProfile profile = CameraProfile::empty("True defects of " + sensor.model, metadataOf(sensor));
  profile.id = idFromSeed(sensor.seed);
  for (const PlantedPixel& pixel : defects.pixels) {
    profile.pixels.push_back({pixel.x, pixel.y, 1.0, reasonFor(pixel.kind)});
  }
  for (const PlantedLine& line : defects.lines) {
    const std::string reason = line.yStart > sensor.activeY ? "Partial column" : "Column";
    profile.lines.push_back({line.x, line.yStart, line.yEnd, line.width, 1.0, reason});
  }
  for (const PlantedSpot& spot : defects.spots) {
    profile.spots->push_back({spot.x, spot.y, spot.radiusX, spot.radiusY, 1.0, "Dust"});
  }
  return profile;
}

}  // namespace tessaly::tools
