// The three rules by which a defective sample is rebuilt from clean samples of its colour. Each returns the new value
// of the sample at column x, row y before it is limited to the range of samples; none changes the mosaic.
//
// No rule reads a defective sample other than the one it rebuilds, so the order in which samples are rebuilt does not
// matter, and a sample may be replaced in place at once.
#pragma once

#include "repair/Mosaic.h"

#include <array>
#include <cstdint>

namespace tessaly {

/// The directions in which spots and points are interpolated, in the order that decides ties.
struct Direction {
  std::int64_t dx = 0;
  std::int64_t dy = 0;
};
inline constexpr std::array<Direction, 4> interpolationDirections{{{1, 0}, {0, 1}, {1, 1}, {1, -1}}};

/// How many rows above and below a sample its rule looks at; lines stay in their row.
inline constexpr std::int64_t pointReach = 4;
inline constexpr std::int64_t spotReach = 63;

/// Samples of defective columns: interpolation along the row, with the fine texture of one neighbour put back.
template <typename AnyMosaic>
[[nodiscard]] std::int64_t rebuildLineSample(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y);

/// Samples of spots: interpolation over a long distance in the flattest direction, within the range that the spot's
/// surroundings span.
template <typename AnyMosaic>
[[nodiscard]] std::int64_t rebuildSpotSample(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y);

/// Single samples: the mean of the two nearest samples of the colour in the flattest direction.
template <typename AnyMosaic>
[[nodiscard]] std::int64_t rebuildPointSample(const AnyMosaic& mosaic, std::int64_t x, std::int64_t y);

}  // namespace tessaly
