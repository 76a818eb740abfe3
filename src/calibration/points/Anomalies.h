// Which photosites of a deviation map depart far enough, in enough frames, to be looked at.
#pragma once

#include "calibration/points/DeviationMap.h"
#include "platform/ParallelBands.h"

#include <cmath>
#include <cstdint>
#include <functional>

namespace tessaly {

/// What an anomaly must exceed.
struct AnomalyThresholds {
  double scale = 0;                 ///< least |mean deviation|; how strong noise of no interest may be
  std::int64_t agreeingFrames = 0;  ///< least number of frames of one sign
};

/// Bright frames: 11 % of the local signal. Dark frames: 24 levels of the reference range. Four frames in five.
[[nodiscard]] AnomalyThresholds anomalyThresholds(const DeviationMap& map);

[[nodiscard]] inline bool isAnomaly(const DeviationMap& map, const AnomalyThresholds& thresholds, std::int64_t index) {
  return map.agreeingFrames(index) >= thresholds.agreeingFrames && std::abs(map.mean(index)) >= thresholds.scale;
}

/// Calls `found` with the index of every anomaly in the rows of the band (counted from the first measured row), in
/// ascending order. `found` may erase photosites.
void forEachAnomaly(const DeviationMap& map, const AnomalyThresholds& thresholds, const RowBand& band,
                    const std::function<void(std::int64_t index)>& found);

/// The number of measured rows, of which bands are made.
[[nodiscard]] std::int64_t measuredRows(const DeviationMap& map);

}  // namespace tessaly
