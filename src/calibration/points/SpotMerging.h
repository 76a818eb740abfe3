// Joins the spots of several exposure groups.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <vector>

namespace tessaly::CalibrationEngine {

/// One spot for each cluster of spots that lie close to the cluster's first one; a spot that nothing repeats is
/// dropped. Clusters keep the order of their first spots.
[[nodiscard]] std::vector<CalibrationCandidate> mergeSpotCandidates(const std::vector<CalibrationCandidate>& spots);

}  // namespace tessaly::CalibrationEngine
