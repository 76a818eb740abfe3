// The innermost loops of the point pass: one row of one frame.
//
// What a photosite should have shown is the median of its four nearest neighbours of the same colour, left, right,
// above and below; how far it departs from that is its deviation. A fixed defect departs in every frame, noise does
// not, so deviations are summed and the positive ones counted.
//
// Stateless; rows of different targets may be added at the same time.
#pragma once

#include <cstdint>

namespace tessaly {

/// A row and the rows of its neighbours, each from the first column that is measured on.
struct NeighbourRows {
  const std::uint16_t* above = nullptr;
  const std::uint16_t* row = nullptr;
  const std::uint16_t* below = nullptr;
  std::int64_t distance = 1;  ///< to the nearest columns of the same colour
  std::int64_t count = 0;     ///< columns that are measured
};

/// Where the deviations of a row are collected.
struct DeviationRow {
  std::int32_t* sums = nullptr;
  std::uint8_t* positives = nullptr;  ///< stays at 255
};

/// What deviations in bright frames are relative to.
struct LocalSignal {
  std::int32_t black = 0;
  std::int32_t minimum = 1;  ///< least signal that is divided by, at least 1
};

/// The largest deviation that is added in either direction.
inline constexpr std::int32_t maximumDeviation = 32767;

/// Thousandths of the local signal: deviation × 1000 / signal, truncated toward zero.
///
/// The division is done in double, which processors do for several samples at once, and is equal to the integer one:
/// both operands are exact (at most 65,535,000 and 65,535). A quotient that is a whole number is representable and so
/// stays what it is. Any other lies at least 1/65,535 = 1.5e-5 away from the next whole number, while rounding moves
/// it by at most 65,535,000 × 2^-53 = 7.3e-9, so truncation finds the same whole number.
[[nodiscard]] inline std::int32_t relativeDeviation(std::int32_t deviation, std::int32_t signal) {
  return static_cast<std::int32_t>(static_cast<double>(deviation * 1000) / static_cast<double>(signal));
}

/// Adds deviations in sample units.
void addDarkRow(const NeighbourRows& rows, const DeviationRow& target);

/// Adds deviations in thousandths of the local signal.
void addBrightRow(const NeighbourRows& rows, const LocalSignal& signal, const DeviationRow& target);

}  // namespace tessaly
