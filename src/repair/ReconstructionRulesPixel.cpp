#include "repair/Mosaics.h"
#include "repair/ReconstructionRules.h"
#include "repair/RowSearch.h"

#include <cstdlib>
#include <optional>

namespace tessaly {
namespace {

/// The first sample of the colour in this direction; nothing when there is none or when it is defective: one farther
/// out would no longer be near enough to stand for a single sample.
template <typename AnyMosaic>
std::optional<std::int64_t> nearestValue(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y, Direction step) {
  for (std::int64_t k = 1; k <= pointReach; ++k) {
    const std::int64_t column = x + k * step.dx, row = y + k * step.dy;
    if (!mosaic.contains(column, row)) return std::nullopt;
    if (!mosaic.sameColour(column, row, x, y)) continue;
    if (mosaic.isDefective(column, row)) return std::nullopt;
    return mosaic.value(column, row);
  }
  return std::nullopt;
}

}  // namespace

template <typename AnyMosaic>
std::int64_t rebuildPointSample(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y) {
  std::optional<std::int64_t> flattest, value;
  for (const Direction& direction : interpolationDirections) {
    const auto back = nearestValue(mosaic, x, y, {-direction.dx, -direction.dy});
    const auto ahead = nearestValue(mosaic, x, y, direction);
    if (!back || !ahead) continue;
    const std::int64_t gradient = std::abs(*back - *ahead);
    if (flattest && gradient >= *flattest) continue;
    flattest = gradient;
    value = (*back + *ahead + 1) >> 1;
  }
  return value ? *value : interpolateRow(mosaic, x, y, findRowNeighbours(mosaic, x, y));
}

template std::int64_t rebuildPointSample(const PlaneMosaic&, std::int64_t, std::int64_t);
template std::int64_t rebuildPointSample(const SliceMosaic&, std::int64_t, std::int64_t);

}  // namespace tessaly
