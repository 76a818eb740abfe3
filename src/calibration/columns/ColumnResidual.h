// How far one sample departs from its horizontal neighbours of the same colour, in units of a 14-bit sensor.
//
// The neighbours are taken in pairs, one to the left and one to the right, so that a slope cancels out. The middle one
// of three pair means is the reference; when exactly one of the others agrees with it, the mean of the two is.
#pragma once

#include "dng/DNGMetadata.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

namespace tessaly {

/// What the residual of a sample depends on besides the samples.
struct ResidualScale {
  std::array<std::int32_t, 3> offsets{};  ///< of the three pairs, in columns
  std::int32_t tolerance = 0;             ///< greatest difference of two pair sums that agree
  double signalRange = 1;

  explicit ResidualScale(const DNGMetadata& metadata);
};

inline constexpr double maximumResidual = 256;

/// Four times (sample − reference), for three pairs given by their sums.
///
/// Everything up to the division is done in whole numbers, and nothing is lost by that. A pair mean is half a pair sum,
/// so two pair means are within a tolerance exactly when their sums are within the whole part of twice the tolerance.
/// The reference is half a sum or a quarter of the sum of two, so four times the difference is a whole number.
[[nodiscard]] inline std::int32_t fourfoldDifference(std::int32_t sample, const std::array<std::int32_t, 3>& sums,
                                                     std::int32_t tolerance) {
  const std::int32_t smaller = sums[0] < sums[1] ? sums[0] : sums[1];
  const std::int32_t larger = sums[0] < sums[1] ? sums[1] : sums[0];
  const std::int32_t low = smaller < sums[2] ? smaller : sums[2];
  const std::int32_t high = larger < sums[2] ? sums[2] : larger;
  const std::int32_t notHigh = larger < sums[2] ? larger : sums[2];
  const std::int32_t middle = smaller < notHigh ? notHigh : smaller;
  const bool lowAgrees = middle - low <= tolerance;
  const bool highAgrees = high - middle <= tolerance;
  const std::int32_t partner = lowAgrees == highAgrees ? middle : (lowAgrees ? low : high);
  return 4 * sample - middle - partner;
}

/// (sample − reference) × 16163 / signal range, within ±256. Only the division rounds: the factor is 16163 / 4, and its
/// product with a difference of at most 20 bits is exact.
[[nodiscard]] inline double residual(std::int32_t fourfold, double signalRange) {
  constexpr double factor = static_cast<double>(DNGMetadata::referenceSignalRange) / 4;
  const double value = static_cast<double>(fourfold) * factor / signalRange;
  const double notAbove = value < maximumResidual ? value : maximumResidual;
  return notAbove > -maximumResidual ? notAbove : -maximumResidual;
}

/// The residual of a sample whose six neighbours are known to lie in its row.
[[nodiscard]] inline double residualAt(const std::uint16_t* sample, const ResidualScale& scale) {
  std::array<std::int32_t, 3> sums{};
  for (std::size_t pair = 0; pair < sums.size(); ++pair) {
    const std::int32_t offset = scale.offsets[pair];
    sums[pair] = sample[-offset] + sample[offset];
  }
  return residual(fourfoldDifference(*sample, sums, scale.tolerance), scale.signalRange);
}

/// Adds the residuals of `sums.size()` adjacent samples; their neighbours lie in the same row.
void addResiduals(const std::uint16_t* samples, const ResidualScale& scale, std::span<double> sums);

namespace CalibrationEngine {

/// The residual of any sample of a raw plane: the rule itself, for programs that use the engine and as what the fast
/// road above is tested against. Neighbours exist within its raw row only; with fewer than two pairs the
/// residual is 0.
[[nodiscard]] double normalizedColumnResidual(std::span<const std::uint16_t> raw, std::int64_t index,
                                              const DNGMetadata& metadata);

}  // namespace CalibrationEngine
}  // namespace tessaly
