// Interpolation along the row, which serves defective columns and every sample for which nothing better is found.
#pragma once

#include <cstdint>
#include <optional>

namespace tessaly {

/// The nearest clean samples of the colour at both sides, within 15 columns.
struct RowNeighbours {
  std::optional<std::int64_t> left;   ///< column
  std::optional<std::int64_t> right;  ///< column
};

template <typename AnyMosaic>
[[nodiscard]] RowNeighbours findRowNeighbours(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y);

/// Linear between both neighbours, rounded; with one neighbour its value; without any the sample's own.
template <typename AnyMosaic>
[[nodiscard]] std::int64_t interpolateRow(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y,
                                          const RowNeighbours& neighbours);

}  // namespace tessaly
