// The candidates of one exposure group: defective photosites and, in bright frames, fixed shadows.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "calibration/points/DeviationMap.h"

#include <vector>

namespace tessaly::CalibrationEngine {

/// The pixels and spots of the group whose frames are in the map, in raw coordinates: the most confident first, at most
/// PointFindings::capacity. Uses the map up; reset it before the next group.
[[nodiscard]] std::vector<CalibrationCandidate> detectPointGroup(DeviationMap& map);

}  // namespace tessaly::CalibrationEngine
