#include "repair/Mosaics.h"
#include "repair/ReconstructionRules.h"
#include "repair/RowSearch.h"

#include <optional>

namespace tessaly {
namespace {

/// How far the sample at `column` departs from the mean of its own neighbours one period away: the texture that
/// interpolation smooths away. Nothing when one of the three is outside the row or defective, or has another colour.
template <typename AnyMosaic>
std::optional<std::int64_t> detailAt(const AnyMosaic& mosaic, std::int64_t column, std::int64_t x, std::int64_t y) {
  const std::int64_t before = column - mosaic.period(), after = column + mosaic.period();
  if (!mosaic.contains(before, y) || !mosaic.contains(after, y)) return std::nullopt;
  if (!mosaic.sameColour(column, y, x, y)) return std::nullopt;
  for (const std::int64_t used : {before, column, after}) {
    if (mosaic.isDefective(used, y)) return std::nullopt;
  }
  return mosaic.value(column, y) - ((mosaic.value(after, y) + mosaic.value(before, y) + 1) >> 1);
}

/// With detail at both sides the sides alternate like a checkerboard, so that no side's texture forms a stripe.
template <typename AnyMosaic>
std::int64_t textureCorrection(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y,
                               const RowNeighbours& neighbours) {
  const std::int64_t step = mosaic.hasColours() ? 2 : 1;
  const auto left = detailAt(mosaic, *neighbours.left - step, x, y);
  const auto right = detailAt(mosaic, *neighbours.right + step, x, y);
  if (left && right) return ((x ^ y) & 1) != 0 ? *right : *left;
  return left.value_or(right.value_or(0));
}

}  // namespace

template <typename AnyMosaic>
std::int64_t rebuildLineSample(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y) {
  const RowNeighbours neighbours = findRowNeighbours(mosaic, x, y);
  const std::int64_t base = interpolateRow(mosaic, x, y, neighbours);
  if (!neighbours.left || !neighbours.right) return base;
  return base + textureCorrection(mosaic, x, y, neighbours);
}

template std::int64_t rebuildLineSample(const PlaneMosaic&, std::int64_t, std::int64_t);
template std::int64_t rebuildLineSample(const SliceMosaic&, std::int64_t, std::int64_t);

}  // namespace tessaly
