// Tells a partial column, which begins below a fixed pixel, from one over the full height.
#pragma once

#include "calibration/CalibrationRecords.h"

namespace tessaly::CandidateSelection {

/// Whether a line starts below the first active row.
[[nodiscard]] bool isPartialColumn(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

}  // namespace tessaly::CandidateSelection
