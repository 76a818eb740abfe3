// Which candidates are included before anybody has looked at them.
//
// Pure; safe from any thread.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <set>
#include <vector>

namespace tessaly::CandidateSelection {

/// Whether a candidate starts included.
[[nodiscard]] bool isPreselected(const CalibrationCandidate& candidate, double pixelConfidence);

/// The ids of the candidates that start included.
[[nodiscard]] std::set<UUID> preselected(const std::vector<CalibrationCandidate>& candidates, double pixelConfidence);

/// `accepted` without pixels below the threshold and with all pixels at or above it; other kinds stay as they are.
[[nodiscard]] std::set<UUID> withMatchingPixels(const std::vector<CalibrationCandidate>& candidates,
                                                const std::set<UUID>& accepted, double pixelConfidence);

}  // namespace tessaly::CandidateSelection
