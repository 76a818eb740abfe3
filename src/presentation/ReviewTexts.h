// What the status line of the profile creation tab says while candidates are reviewed, in the interface's language.
// Columns and rows are active coordinates.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <cstdint>
#include <string>

namespace tessaly::ReviewTexts {

/// After "Select Matching Pixels" with a threshold of 0.5 to 1.
[[nodiscard]] std::string matchingPixelsIncluded(double pixelConfidence);

/// After a click on a candidate's marker.
[[nodiscard]] std::string candidateClicked(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

/// After a click on a column without a marker.
[[nodiscard]] std::string columnClicked(std::int64_t x);

/// While a photograph is shown in place of the bright-field preview.
[[nodiscard]] std::string inspecting(const std::string& fileName);

}  // namespace tessaly::ReviewTexts
