// What was planted, as the camera profile that a perfect calibration would have saved.
#pragma once

#include "profile/CameraProfile.h"
#include "tools/SensorSimulator.h"

namespace tessaly::tools {

/// Reasons say what kind of pixel or column it is ("Hot pixel", "Partial column"). The id follows from the seed.
[[nodiscard]] CameraProfile truthProfile(const SensorDescription& sensor, const PlantedDefects& defects);

}  // namespace tessaly::tools
