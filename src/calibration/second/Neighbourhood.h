// Rows of a plane with mirrored borders, and how far its samples depart from their neighbours.
#pragma once

#include "calibration/second/Planes.h"
#include "calibration/second/RobustSpread.h"

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace tessaly::second {

/// The sample of the same phase that stands for one outside: the mirror is the outermost sample of the phase.
[[nodiscard]] std::int64_t mirrored(std::int64_t index, std::int64_t length, std::int64_t step);

/// Gives rows room for three steps on either side. Each thread needs its own.
class MirroredRows {
 public:
  static constexpr std::int64_t steps = 3;

  MirroredRows(const Plane& plane, const PlaneShape& shape);

  /// Row y, which may lie up to a step outside, in the given slot (0, 1 or 2); valid until the slot is used again.
  [[nodiscard]] const std::int16_t* row(std::int64_t y, std::size_t slot);

  /// sample − median of its eight neighbours of the same phase, for the whole row.
  void departures(std::int64_t y, std::int16_t* target);

  /// sample − median of the six samples of the same phase beside it.
  void lineResiduals(std::int64_t y, std::int16_t* target);

 private:
  const Plane& plane_;
  const PlaneShape& shape_;
  std::array<std::vector<std::int16_t>, 3> rows_;
};

/// The departure of one sample.
[[nodiscard]] int departureAt(const Plane& plane, const PlaneShape& shape, std::int64_t x, std::int64_t y);

/// The columns of a row that count.
using CountedColumns = std::function<std::span<const ColumnRange>(std::int64_t y)>;

/// The spread of a plane, and of its departures, where it counts.
[[nodiscard]] Spread spreadOfPlane(const Plane& plane, const PlaneShape& shape, const CountedColumns& counted,
                                   int threads);
[[nodiscard]] Histogram histogramOfDepartures(const Plane& plane, const PlaneShape& shape,
                                              const CountedColumns& counted, int threads);
[[nodiscard]] Spread spreadOfDepartures(const Plane& plane, const PlaneShape& shape, const CountedColumns& counted,
                                        int threads);

}  // namespace tessaly::second
