#include "repair/RepairEngine.h"

#include "dng/DNGError.h"
#include "repair/DefectMap.h"
#include "repair/Mosaics.h"
#include "repair/ReconstructionRules.h"

namespace tessaly {
namespace {

using Rule = std::int64_t (*)(const PlaneMosaic&, std::int64_t, std::int64_t);

/// Rebuilds every sample of `samples` by `rule`.
void rebuild(PlaneView raw, const PlaneMosaic& mosaic, const SampleMask& samples, Rule rule) {
  samples.forEach([&](std::int64_t x, std::int64_t y) { raw.at(x, y) = mosaic.limited(rule(mosaic, x, y)); });
}

}  // namespace

RepairReport RepairEngine::repair(PlaneView raw, const DNGMetadata& metadata, const DefectMap& defects) {
  const MosaicColours colours(metadata);
  const PlaneMosaic mosaic(raw, metadata, colours, defects.all);
  rebuild(raw, mosaic, defects.lines, rebuildLineSample);
  rebuild(raw, mosaic, defects.spots, rebuildSpotSample);
  rebuild(raw, mosaic, defects.points, rebuildPointSample);
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
