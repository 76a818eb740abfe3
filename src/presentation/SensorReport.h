// The health report of a camera body: its noise, its gain, how its photosites differ, and its defects by strength.
//
// Pure apart from reading the interface's language; safe from any thread.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <string>

namespace tessaly::SensorReport {

/// The page, a whole HTML file. The result must hold a second opinion.
[[nodiscard]] std::string page(const CalibrationResult& result);

/// How frames were exposed: "ISO 100, 1/30 s, f/16", as far as that is known.
[[nodiscard]] std::string exposure(const SettingFigures& setting);

}  // namespace tessaly::SensorReport
