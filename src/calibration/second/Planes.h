// The planes of the second opinion: one 16-bit value a sample of the active area, row after row. Whole numbers make
// every sum exact, so that results cannot depend on the number of threads.
//
// Light is kept as its departure from the large-scale model, 1 being `lightQuanta`; darkness as the departure in u (a
// raw unit of a 14-bit range), 1 u being `unitQuanta`. Both end at ±`limit`, so that differences fit 16 bits too.
#pragma once

#include "calibration/MosaicSteps.h"
#include "dng/DNGMetadata.h"
#include "dng/RawPlane.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessaly::second {

inline constexpr int lightQuanta = 16000;
inline constexpr int unitQuanta = 16;
inline constexpr int limit = 16000;
/// The 14-bit range of which u is a unit.
inline constexpr double unitsOfRange = 15871;

/// The size of a plane and how far samples of one colour phase are apart: 2 on a mosaic, 1 without one.
struct PlaneShape {
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::int64_t step = 1;

  PlaneShape() = default;
  PlaneShape(std::int64_t columns, std::int64_t rows, std::int64_t phaseStep)
      : width(columns), height(rows), step(phaseStep) {}
  explicit PlaneShape(const DNGMetadata& metadata)
      : width(metadata.activeWidth), height(metadata.activeHeight), step(stepsOf(metadata).sameColour) {}

  [[nodiscard]] std::size_t count() const { return static_cast<std::size_t>(width * height); }
  [[nodiscard]] bool contains(std::int64_t x, std::int64_t y) const {
    return x >= 0 && y >= 0 && x < width && y < height;
  }
};

using Plane = std::vector<std::int16_t, UninitializedAllocator<std::int16_t>>;

/// Columns from `first` up to, but excluding, `last`.
struct ColumnRange {
  std::int64_t first = 0;
  std::int64_t last = 0;

  bool operator==(const ColumnRange&) const = default;
};

}  // namespace tessaly::second
