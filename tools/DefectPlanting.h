// Plants a believable set of defects on a simulated sensor, at random places that follow from the sensor's seed, apart
// from each other, and strong enough that a careful calibration finds each of them.
#pragma once

#include "tools/SensorSimulator.h"

#include <cstdint>

namespace tessaly::tools {

/// How many of each.
struct DefectCounts {
  std::int64_t hotPixels = 24;
  std::int64_t deadPixels = 6;
  std::int64_t stuckPixels = 4;
  std::int64_t columns = 3;         ///< one in three of them is two columns wide
  std::int64_t partialColumns = 3;  ///< each below a hot pixel of its own
  std::int64_t spots = 5;           ///< every fifth is a thin one, which only a careful eye includes
};

/// The sensor needs an active area of at least 600 × 300 samples for the usual counts; throws std::runtime_error when
/// there is no place left.
[[nodiscard]] PlantedDefects plantDefects(const SensorDescription& sensor, const DefectCounts& counts);

}  // namespace tessaly::tools
