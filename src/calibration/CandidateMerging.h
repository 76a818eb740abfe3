// Joins the pixels of several exposure groups, and puts candidates in the order in which they are reported.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <span>
#include <vector>

namespace tessaly::CalibrationEngine {

/// One pixel for each position that was found in at least two exposure groups. `pixels` are those of all groups, in the
/// order of the groups; a group has at most one a position. Row by row.
[[nodiscard]] std::vector<CalibrationCandidate> mergePixels(std::span<const CalibrationCandidate> pixels);

/// Lines, spots, pixels; within a kind the most confident first, then by x, then by yStart. Stable.
void orderCandidates(std::vector<CalibrationCandidate>& candidates);

}  // namespace tessaly::CalibrationEngine
