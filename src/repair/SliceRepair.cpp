#include "repair/SliceRepair.h"

#include "repair/Mosaics.h"
#include "repair/ReconstructionRules.h"

namespace tessaly {
namespace {

std::int64_t rebuiltSample(const SliceMosaic& mosaic, const DefectRows& defects, std::int64_t x, std::int64_t y) {
  if (defects.isOnLine(x, y)) return rebuildLineSample(mosaic, x, y);
  return defects.isOnSpot(x, y) ? rebuildSpotSample(mosaic, x, y) : rebuildPointSample(mosaic, x, y);
}

}  // namespace

SliceRepair::SliceRepair(const DNGMetadata& metadata, const CameraProfile& profile, std::int64_t mostRows)
    : metadata_(metadata), colours_(metadata), defects_(profile, metadata, reachOf(profile), mostRows) {}

std::int64_t SliceRepair::reachOf(const CameraProfile& profile) {
  const bool hasSpots = profile.spots && !profile.spots->empty();
  return hasSpots ? spotReach : pointReach;
}

void SliceRepair::repair(SampleWindow& samples, const SliceRows& slice) {
  defects_.moveTo(slice);
  const SliceMosaic mosaic(samples, metadata_, colours_, defects_);
  defects_.forEach(slice, [&](std::int64_t x, std::int64_t y) {
    samples.replace(x, y, mosaic.limited(rebuiltSample(mosaic, defects_, x, y)));
  });
}

}  // namespace tessaly
