#include "repair/RowSearch.h"

#include "repair/Mosaics.h"

namespace tessaly {
namespace {

constexpr std::int64_t searchColumns = 15;

template <typename AnyMosaic>
std::optional<std::int64_t> findInRow(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y, std::int64_t step) {
  for (std::int64_t distance = 1; distance <= searchColumns; ++distance) {
    const std::int64_t column = x + step * distance;
    if (!mosaic.contains(column, y)) return std::nullopt;
    if (!mosaic.isDefective(column, y) && mosaic.sameColour(column, y, x, y)) return column;
  }
  return std::nullopt;
}

}  // namespace

template <typename AnyMosaic>
RowNeighbours findRowNeighbours(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y) {
  return {findInRow(mosaic, x, y, -1), findInRow(mosaic, x, y, 1)};
}

template <typename AnyMosaic>
std::int64_t interpolateRow(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y, const RowNeighbours& neighbours) {
  if (!neighbours.left && !neighbours.right) return mosaic.value(x, y);
  if (!neighbours.right) return mosaic.value(*neighbours.left, y);
  if (!neighbours.left) return mosaic.value(*neighbours.right, y);
  const std::int64_t left = *neighbours.left, right = *neighbours.right, span = right - left;
  return (mosaic.value(left, y) * (right - x) + mosaic.value(right, y) * (x - left) + span / 2) / span;
}

template RowNeighbours findRowNeighbours(const PlaneMosaic&, std::int64_t, std::int64_t);
template RowNeighbours findRowNeighbours(const SliceMosaic&, std::int64_t, std::int64_t);
template std::int64_t interpolateRow(const PlaneMosaic&, std::int64_t, std::int64_t, const RowNeighbours&);
template std::int64_t interpolateRow(const SliceMosaic&, std::int64_t, std::int64_t, const RowNeighbours&);

}  // namespace tessaly
