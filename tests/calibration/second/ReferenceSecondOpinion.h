// The statistics of the second opinion, written from their rules without regard to speed: the plain twins of the fast
// loops.
#pragma once

#include "calibration/second/Planes.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace tessaly::tests {

/// The mean of the two middle numbers, or the middle one.
[[nodiscard]] double plainMedian(std::vector<double> numbers);

/// Median and 1.4826 × median absolute deviation.
[[nodiscard]] std::pair<double, double> plainSpread(const std::vector<double>& numbers);

/// What the frames say of one sample.
struct PlainReduction {
  double median = 0;
  double variance = 0;
  double trimmedVariance = 0;
};
[[nodiscard]] PlainReduction plainReduction(const std::vector<int>& frames);

/// A sample of a plane whose borders are mirrors of each phase.
[[nodiscard]] int plainSample(const second::Plane& plane, const second::PlaneShape& shape, std::int64_t x,
                              std::int64_t y);

/// sample − median of the eight neighbours, or of the six beside it, of the same phase; medians rounded down.
[[nodiscard]] int plainDeparture(const second::Plane& plane, const second::PlaneShape& shape, std::int64_t x,
                                 std::int64_t y);
[[nodiscard]] int plainLineResidual(const second::Plane& plane, const second::PlaneShape& shape, std::int64_t x,
                                    std::int64_t y);

/// Mean over the ring from 1.5 to 2.2 radii less the mean over the disc.
[[nodiscard]] double plainRingLessDisc(const second::Plane& plane, const second::PlaneShape& shape, std::int64_t x,
                                       std::int64_t y, double radius);

}  // namespace tessaly::tests
