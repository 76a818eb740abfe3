#include "calibration/points/Anomalies.h"

#include "calibration/ActiveSamples.h"
#include "calibration/VectorClones.h"

#include <algorithm>

namespace tessaly {
namespace {

constexpr double brightScale = 110.0;  // thousandths of the local signal
constexpr double darkScale = 24;       // levels of the reference range
constexpr double agreeingShare = 0.8;

// Anomalies are rare: blocks of a row without a sum that could reach the scale are passed over at once.
constexpr std::int64_t blockLength = 256;

// No smaller sum gives a mean that reaches the scale, whichever way product and quotient are rounded.
std::int32_t leastSum(const DeviationMap& map, const AnomalyThresholds& thresholds) {
  constexpr double roundingReserve = 0.001;
  const double sum = std::ceil(thresholds.scale * static_cast<double>(map.frameCount()) - roundingReserve);
  return static_cast<std::int32_t>(std::clamp(sum, 0.0, 2147483647.0));
}

TESSALY_VECTOR_CLONES
bool anyReaches(const std::int32_t* sums, std::int64_t count, std::int32_t least) {
  std::int32_t any = 0;
  for (std::int64_t x = 0; x < count; ++x) {
    any |= static_cast<std::int32_t>(sums[x] >= least) | static_cast<std::int32_t>(sums[x] <= -least);
  }
  return any != 0;
}

double noiseScale(const DeviationMap& map) {
  if (!map.isDark()) return brightScale;
  return static_cast<double>(signalRange(map.metadata())) * darkScale / DNGMetadata::referenceSignalRange;
}

}  // namespace

AnomalyThresholds anomalyThresholds(const DeviationMap& map) {
  return {noiseScale(map), static_cast<std::int64_t>(static_cast<double>(map.frameCount()) * agreeingShare)};
}

std::int64_t measuredRows(const DeviationMap& map) {
  return std::max<std::int64_t>(map.height() - 2 * DeviationMap::margin, 0);
}

void forEachAnomaly(const DeviationMap& map, const AnomalyThresholds& thresholds, const RowBand& band,
                    const std::function<void(std::int64_t index)>& found) {
  const std::int32_t least = leastSum(map, thresholds);
  const std::int64_t end = map.width() - DeviationMap::margin;
  for (std::int64_t y = band.first + DeviationMap::margin; y < band.last + DeviationMap::margin; ++y) {
    for (std::int64_t x = DeviationMap::margin; x < end; x += blockLength) {
      const std::int64_t count = std::min(blockLength, end - x);
      if (!anyReaches(map.sums(y) + x, count, least)) continue;
      for (std::int64_t index = y * map.width() + x, last = index + count; index < last; ++index) {
        if (isAnomaly(map, thresholds, index)) found(index);
      }
    }
  }
}

}  // namespace tessaly
