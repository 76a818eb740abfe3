// Finds single photosites whose response departs from that of their neighbours: hot, dead or abnormal pixels.
#pragma once

#include "calibration/points/DeviationMap.h"
#include "calibration/points/PointFindings.h"

namespace tessaly {

/// An anomaly is a pixel defect when it stands out against the anomalies around it.
[[nodiscard]] PointFindings findPixels(const DeviationMap& map);

}  // namespace tessaly
