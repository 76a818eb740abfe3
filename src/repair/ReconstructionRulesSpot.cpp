#include "repair/Mosaics.h"
#include "repair/ReconstructionRules.h"
#include "repair/RowSearch.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace tessaly {
namespace {

/// A clean sample of the colour at the rim of the spot.
struct RimSample {
  std::int64_t distance = 0;
  std::int64_t value = 0;
};

/// What the surroundings say about one sample of a spot.
struct Reconstruction {
  bool found = false;
  std::int64_t value = 0;
  std::int64_t gradient = 0;
  std::int64_t lowest = 65535;
  std::int64_t highest = 0;
};

template <typename AnyMosaic>
std::optional<RimSample> findRim(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y, Direction step) {
  for (std::int64_t k = 1; k <= spotReach; ++k) {
    const std::int64_t column = x + k * step.dx, row = y + k * step.dy;
    if (!mosaic.contains(column, row)) return std::nullopt;
    if (mosaic.isDefective(column, row) || !mosaic.sameColour(column, row, x, y)) continue;
    return RimSample{k, mosaic.value(column, row)};
  }
  return std::nullopt;
}

/// A direction whose two rim samples differ least for their distance replaces an earlier, steeper one.
void consider(Reconstruction& best, const RimSample& back, const RimSample& ahead) {
  const std::int64_t span = back.distance + ahead.distance;
  const std::int64_t gradient = std::abs(back.value - ahead.value) * 1024 / span;
  best.lowest = std::min({best.lowest, back.value, ahead.value});
  best.highest = std::max({best.highest, back.value, ahead.value});
  if (best.found && gradient >= best.gradient) return;
  best.found = true;
  best.gradient = gradient;
  best.value = (back.value * ahead.distance + ahead.value * back.distance + span / 2) / span;
}

}  // namespace

template <typename AnyMosaic>
std::int64_t rebuildSpotSample(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y) {
  Reconstruction best;
  for (const Direction& direction : interpolationDirections) {
    const auto back = findRim(mosaic, x, y, {-direction.dx, -direction.dy});
    if (!back) continue;
    const auto ahead = findRim(mosaic, x, y, direction);
    if (ahead) consider(best, *back, *ahead);
  }
  if (!best.found) return interpolateRow(mosaic, x, y, findRowNeighbours(mosaic, x, y));
  return std::clamp(best.value, best.lowest, best.highest);
}

template std::int64_t rebuildSpotSample(const PlaneMosaic&, std::int64_t, std::int64_t);
template std::int64_t rebuildSpotSample(const SliceMosaic&, std::int64_t, std::int64_t);

}  // namespace tessaly
