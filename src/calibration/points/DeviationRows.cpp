#include "calibration/points/DeviationRows.h"

#include "calibration/VectorClones.h"

#include <algorithm>

namespace tessaly {
namespace {

using Sample = std::uint16_t;

// The mean of the two middle values of four, rounded up at one half: the larger of the two lesser ones and the lesser
// of the two larger ones are the middle pair.
inline Sample medianOfFour(Sample a, Sample b, Sample c, Sample d) {
  const Sample second = std::max(std::min(a, b), std::min(c, d));
  const Sample third = std::min(std::max(a, b), std::max(c, d));
  return static_cast<Sample>((second + third + 1) >> 1);
}

// sample − median within ±32767, without leaving 16 bits, so that a register holds twice as many samples. One of the
// two distances is always 0.
inline std::int16_t clampedDifference(Sample sample, Sample median) {
  constexpr Sample limit = maximumDeviation;
  const auto above = std::min(static_cast<Sample>(std::max(sample, median) - median), limit);
  const auto below = std::min(static_cast<Sample>(median - std::min(sample, median)), limit);
  return static_cast<std::int16_t>(static_cast<Sample>(above - below));
}

inline std::uint8_t saturatedIncrement(std::uint8_t count, bool increment) {
  const auto next = static_cast<std::uint8_t>(count + (increment ? 1 : 0));
  return next < count ? count : next;
}

// Sums wrap instead of being undefined; it takes more than 65,536 frames of one exposure to get there.
inline std::int32_t wrappingSum(std::int32_t sum, std::int32_t deviation) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(sum) + static_cast<std::uint32_t>(deviation));
}

// By value: through the references of std::clamp the compiler loses a fifth of the speed.
inline std::int32_t clamped(std::int32_t deviation) {
  const std::int32_t notAbove = deviation < maximumDeviation ? deviation : maximumDeviation;
  return notAbove > -maximumDeviation ? notAbove : -maximumDeviation;
}

// The loops take plain pointers: the compiler vectorises them only where it knows that none overlap.
TESSALY_VECTOR_CLONES
void addDark(const NeighbourRows& rows, std::int32_t* __restrict sums, std::uint8_t* __restrict positives) {
  const Sample* __restrict above = rows.above;
  const Sample* __restrict row = rows.row;
  const Sample* __restrict below = rows.below;
  const std::int64_t distance = rows.distance;
  const std::int64_t count = rows.count;
  for (std::int64_t x = 0; x < count; ++x) {
    const Sample median = medianOfFour(row[x - distance], row[x + distance], above[x], below[x]);
    const std::int16_t deviation = clampedDifference(row[x], median);
    sums[x] = wrappingSum(sums[x], deviation);
    positives[x] = saturatedIncrement(positives[x], deviation > 0);
  }
}

TESSALY_VECTOR_CLONES
void addBright(const NeighbourRows& rows, LocalSignal signal, std::int32_t* __restrict sums,
               std::uint8_t* __restrict positives) {
  const Sample* __restrict above = rows.above;
  const Sample* __restrict row = rows.row;
  const Sample* __restrict below = rows.below;
  const std::int64_t distance = rows.distance;
  const std::int64_t count = rows.count;
  const std::int32_t minimum = signal.minimum;
  const std::int32_t black = signal.black;
  for (std::int64_t x = 0; x < count; ++x) {
    const std::int32_t median = medianOfFour(row[x - distance], row[x + distance], above[x], below[x]);
    const std::int32_t divisor = std::max(minimum, median - black);
    const std::int32_t deviation = clamped(relativeDeviation(row[x] - median, divisor));
    sums[x] = wrappingSum(sums[x], deviation);
    positives[x] = saturatedIncrement(positives[x], deviation > 0);
  }
}

}  // namespace

void addDarkRow(const NeighbourRows& rows, const DeviationRow& target) {
  addDark(rows, target.sums, target.positives);
}

void addBrightRow(const NeighbourRows& rows, const LocalSignal& signal, const DeviationRow& target) {
  addBright(rows, signal, target.sums, target.positives);
}

}  // namespace tessaly
