// What the status line of the profile creation tab says while candidates are reviewed, in the interface's language.
// Columns and rows are active coordinates.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tessaly::ReviewTexts {

/// After "Select Matching Pixels" with a threshold of 0.5 to 1.
[[nodiscard]] std::string matchingPixelsIncluded(double pixelConfidence);

/// After a click on a candidate's marker.
[[nodiscard]] std::string candidateClicked(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

/// After a click on a column without a marker.
[[nodiscard]] std::string columnClicked(std::int64_t x);

/// After an addition by hand, and where there was nothing to add because a candidate has that place.
[[nodiscard]] std::string added(const CalibrationCandidate& candidate, const DNGMetadata& metadata);
[[nodiscard]] std::string addedBefore(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

/// After these additions were taken away; none: why nothing was.
[[nodiscard]] std::string removed(const std::vector<CalibrationCandidate>& candidates, const DNGMetadata& metadata);

/// The same defects stand in a stored profile of this name.
[[nodiscard]] std::string savedBefore(const std::string& profileName);

/// While a photograph is shown in place of the bright-field preview.
[[nodiscard]] std::string inspecting(const std::string& fileName);

}  // namespace tessaly::ReviewTexts
