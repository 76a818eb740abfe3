// Weak columns and parts of columns: whoever departs from its neighbours by more than 6 standard deviations in its best
// run. What is found is no reference for others, so the search is repeated until nothing changes.
#pragma once

#include "calibration/second/ColumnRuns.h"

#include <vector>

namespace tessaly::second {

inline constexpr double lineThreshold = 6;

/// By column, from left to right. `ignored` may be empty.
[[nodiscard]] std::vector<FoundColumn> findLines(const Plane& plane, const PlaneShape& shape,
                                                 const IgnoredSamples& ignored, int threads);

/// The mean residual of a found column in another plane, over its rows; the samples beside it within
/// `lineReach` phase steps are looked at. Other found columns are no references.
inline constexpr std::int64_t lineReach = 8;
[[nodiscard]] double meanResidual(const Plane& plane, const PlaneShape& shape, const FoundColumn& column,
                                  const std::vector<FoundColumn>& all);

}  // namespace tessaly::second
