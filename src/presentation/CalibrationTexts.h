// The sentences of the profile creation tab about an analysis and its profile, shared by window and command line.
//
// Pure apart from reading the interface's language; safe from any thread.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "profile/CameraProfile.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace tessaly::CalibrationTexts {

/// Where an analysis stands: the translation of the engine's message.
[[nodiscard]] std::string progress(const CalibrationProgress& progress);

/// What an analysis found. `preselectedSpots`: how many spots start included.
[[nodiscard]] std::string completion(const CalibrationResult& result, std::int64_t preselectedSpots);

/// The same for the spots that start included at this pixel threshold.
[[nodiscard]] std::string completion(const CalibrationResult& result, double pixelConfidence);

/// After a profile was saved to `file`.
[[nodiscard]] std::string saved(const CameraProfile& profile, const std::filesystem::path& file);

/// The camera body that the frames come from: its model and, where it is known, its serial number.
[[nodiscard]] std::string camera(const DNGMetadata& metadata);

/// How many of the candidates are included.
[[nodiscard]] std::string includedCount(std::int64_t included, std::int64_t total);

}  // namespace tessaly::CalibrationTexts
