#include "repair/RepairEngine.h"

#include "dng/DNGError.h"
#include "repair/DefectMap.h"
#include "repair/Mosaic.h"
#include "repair/ReconstructionRules.h"

#include <algorithm>

namespace tessaly {
namespace {

using Rule = std::int64_t (*)(const Mosaic&, std::int64_t, std::int64_t);

/// Rebuilds every sample of `samples` by `rule`. A rebuilt sample never exceeds the white level, not even one that
/// kept its old value for want of neighbours.
void rebuild(Mosaic& mosaic, const SampleMask& samples, std::int64_t white, Rule rule) {
  samples.forEach([&](std::int64_t x, std::int64_t y) {
    const std::int64_t value = std::clamp<std::int64_t>(rule(mosaic, x, y), 0, 65535);
    mosaic.setValue(x, y, std::min(value, white));
  });
}

}  // namespace

RepairReport RepairEngine::repair(PlaneView raw, const DNGMetadata& metadata, const DefectMap& defects) {
  Mosaic mosaic(raw, metadata, defects.all);
  const std::int64_t white = std::clamp<std::int64_t>(metadata.whiteLevel, 0, 65535);
  rebuild(mosaic, defects.lines, white, rebuildLineSample);
  rebuild(mosaic, defects.spots, white, rebuildSpotSample);
  rebuild(mosaic, defects.points, white, rebuildPointSample);
  return {defects.all.count(), defects.points.count(), defects.lines.count(), defects.spots.count()};
}

RepairReport RepairEngine::repair(std::span<std::uint16_t> raw, const DNGMetadata& metadata,
                                  const CameraProfile& profile) {
  profile.validate(metadata);
  if (static_cast<std::int64_t>(raw.size()) != metadata.pixelCount()) {
    throw DNGError::invalid("Raw pixel count does not match the DNG metadata");
  }
  return repair(PlaneView(raw, metadata), metadata, DefectMap(profile, metadata.rawWidth, metadata.rawHeight));
}

}  // namespace tessaly
