// The distances at which calibration looks at samples: one set for a sensor with a colour mosaic, one for a sensor
// without. A kind of mosaic that repeats in another rhythm than every two samples is told here.
#pragma once

#include "dng/MosaicKind.h"

#include <array>
#include <cstdint>

namespace tessaly {

struct MosaicSteps {
  /// To the nearest samples of the same colour, left, right, above and below.
  std::int64_t sameColour;

  /// How far apart darkened photosites of one shadow may lie. A shadow darkens all colours, so that on a mosaic direct
  /// neighbours belong together; without one a photosite between two may have stayed below the threshold.
  std::int64_t shadowReach;

  /// Grid on which the typical level of a frame is taken: about one sample in a thousand. Odd on a mosaic, so that it
  /// passes over every colour.
  std::int64_t levelGrid;

  /// Columns of the three pairs that a sample of a column is compared with: the same colour on a mosaic. Without one
  /// the nearest are left out, which may share the column's defect.
  std::array<std::int32_t, 3> columnPairs;

  /// Adjacent rows that are measured at once for a whole column: both rows of the mosaic's cell.
  std::int64_t rowsAtOnce;

  /// From one measured row to the next below a fixed pixel. Odd on a mosaic, so that both rows of its cell take turns.
  std::int64_t trailRow;
};

inline constexpr MosaicSteps bayerSteps{2, 1, 31, {2, 4, 6}, 2, 7};
inline constexpr MosaicSteps linearSteps{1, 2, 32, {3, 5, 7}, 1, 8};

[[nodiscard]] inline const MosaicSteps& stepsOf(const DNGMetadata& metadata) {
  switch (mosaicKindOf(metadata)) {
    case MosaicKind::bayer:
      return bayerSteps;
    case MosaicKind::none:
      break;
  }
  return linearSteps;
}

}  // namespace tessaly
