// The sentences of the profile creation tab, shared by window and command line.
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

/// After "Select Matching Pixels"; the threshold as a fraction, shown in whole percent.
[[nodiscard]] std::string matchingPixels(double pixelConfidence);

/// After a click on a candidate's marker has filled the manual fields.
[[nodiscard]] std::string markerClicked(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

/// After a click on the empty image; an active-area column.
[[nodiscard]] std::string columnClicked(std::int64_t activeX);

/// While the preview of an inspected photograph is shown.
[[nodiscard]] std::string inspecting(const std::filesystem::path& photograph);

/// After a profile was saved to `file`.
[[nodiscard]] std::string saved(const CameraProfile& profile, const std::filesystem::path& file);

/// A candidate's reason, which is kept in English.
[[nodiscard]] std::string reason(const CalibrationCandidate& candidate);

/// "Pixel", "Column", "Partial Column" or "Fixed Spot".
[[nodiscard]] std::string kind(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

[[nodiscard]] std::string includedCount(std::int64_t included, std::int64_t total);

}  // namespace tessaly::CalibrationTexts
