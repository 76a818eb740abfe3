// Finds compact clusters of darkened photosites in bright frames: the fixed shadows of dust or sensor spots.
#pragma once

#include "calibration/points/DeviationMap.h"
#include "calibration/points/PointFindings.h"

namespace tessaly {

/// Groups the anomalies that are darker than their neighbours and keeps the groups that have the size of a spot. Erases
/// from the map what it has looked at: search for pixels first.
[[nodiscard]] PointFindings findSpots(DeviationMap& map);

}  // namespace tessaly
