#include "tools/TruthProfile.h"

#include "tools/Deterministic.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>

namespace tessaly::tools {
namespace {

constexpr const char* separator = ", ";

std::string reasonOf(const char* kind, double strength, const char* unit) {
  return fmt::format("{}{}{:.3g} {}", kind, separator, strength, unit);
}

std::string reasonOf(const BodyPixel& pixel) {
  switch (pixel.kind) {
    case BodyPixel::Kind::hot:
      return reasonOf("Hot pixel", pixel.strength, "e/s");
    case BodyPixel::Kind::offset:
      return reasonOf("Offset pixel", pixel.strength, "u");
    case BodyPixel::Kind::dim:
      return reasonOf("Dim pixel", pixel.strength * 100, "%");
    case BodyPixel::Kind::stuck:
      return reasonOf("Stuck pixel", pixel.strength * 100, "%");
    case BodyPixel::Kind::telegraph:
      break;
  }
  return reasonOf("Unsteady pixel", pixel.strength, "e");
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

DefectSpot spotOf(const BodyDescription& body, double x, double y, double radiusX, double radiusY) {
  return {
      body.left + std::llround(x), body.top + std::llround(y), std::llround(radiusX), std::llround(radiusY), 1.0, ""};
}

void addLines(const BodyDescription& body, const BodyDefects& defects, CameraProfile& profile) {
  for (const BodyLine& line : defects.lines) {
    const char* kind = line.isPartial ? "Partial column" : "Column";
    profile.lines.push_back({body.left + line.x, body.top + line.yStart, body.top + line.yEnd, line.width, 1.0,
                             reasonOf(kind, line.strength, "u")});
  }
}

void addSpots(const BodyDescription& body, const BodyDefects& defects, double fNumber, CameraProfile& profile) {
  for (const BodyDust& dust : defects.dust) {
    const double radius = dust.shadowRadius(fNumber);
    profile.spots->push_back(spotOf(body, dust.x, dust.y, radius, radius));
    profile.spots->back().reason = reasonOf("Dust", dust.depth(fNumber) * 100, "%");
  }
  for (const BodySpeck& speck : defects.specks) {
    profile.spots->push_back(spotOf(body, speck.x, speck.y, speck.radiusX + 0.5, speck.radiusY + 0.5));
    profile.spots->back().reason = reasonOf("Speck", speck.depth * 100, "%");
  }
}

}  // namespace

DNGMetadata metadataOf(const BodyDescription& body) {
  DNGMetadata metadata;
  metadata.sourceEncoding.emplace();
  metadata.sourceEncoding->activeArea = {body.left, body.top, body.activeWidth, body.activeHeight};
  metadata.cameraSerial = body.serial;
  metadata.make = "Tessaly";
  metadata.model = body.model;
  metadata.rawWidth = body.width();
  metadata.rawHeight = body.height();
  metadata.activeX = body.left;
  metadata.activeY = body.top;
  metadata.activeWidth = body.activeWidth;
  metadata.activeHeight = body.activeHeight;
  metadata.blackLevel = body.black;
  metadata.whiteLevel = body.white;
  if (body.cfa.empty()) return metadata;
  CFALayout layout{2, 2, {}};
  for (const char colour : body.cfa)
    layout.pattern.push_back(colour == 'R' ? 0 : colour == 'G' ? 1 : 2);
  metadata.cfaLayout = layout;
  return metadata;
}

CameraProfile truthProfile(const SensorBody& body, double fNumber) {
  const BodyDescription& sensor = body.description();
  CameraProfile profile = CameraProfile::empty("True defects of " + sensor.model, metadataOf(sensor));
  profile.id = idFromSeed(sensor.seed);
  for (const BodyPixel& pixel : body.defects().pixels)
    profile.pixels.push_back({sensor.left + pixel.x, sensor.top + pixel.y, 1.0, reasonOf(pixel)});
  addLines(sensor, body.defects(), profile);
  addSpots(sensor, body.defects(), fNumber, profile);
  return profile;
}

PlantedReason::PlantedReason(const std::string& reason) : kind(reason.substr(0, reason.find(separator))) {
  if (kind.size() == reason.size()) return;
  const char* const end = reason.data() + reason.size();
  double number = 0;
  const auto [rest, error] = std::from_chars(reason.data() + kind.size() + 2, end, number);
  if (error != std::errc()) return;
  strength = number;
  unit.assign(rest == end ? rest : rest + 1, end);
}

}  // namespace tessaly::tools
