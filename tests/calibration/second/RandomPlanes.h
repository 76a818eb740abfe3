// Small planes of random values for tests.
#pragma once

#include "calibration/second/Planes.h"
#include "tools/NormalNumbers.h"

#include <cmath>
#include <cstdint>

namespace tessaly::tests {

/// Bell-shaped values with this standard deviation.
[[nodiscard]] inline second::Plane randomPlane(const second::PlaneShape& shape, std::uint64_t seed, double sigma) {
  second::Plane plane(shape.count());
  for (std::size_t i = 0; i < plane.size(); ++i)
    plane[i] = static_cast<std::int16_t>(std::lround(sigma * tools::normal(tools::combinedKey(seed, i))));
  return plane;
}

}  // namespace tessaly::tests
