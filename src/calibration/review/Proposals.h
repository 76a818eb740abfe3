// What is decided about the second opinion's findings: which of them are shown beside the documented candidates, and
// which can be included at all.
//
// Stateless; safe from any thread.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <vector>

namespace tessaly::CandidateSelection {

/// The findings that no documented candidate tells already, in their order.
[[nodiscard]] std::vector<SecondOpinionFinding> proposals(const CalibrationResult& result);

/// Whether a finding can become part of a profile. A shadow that is wide (a radius above 5) or faint (less than 5 % of
/// the light) cannot: rebuilding it would destroy more of a photograph's texture than the shadow does.
[[nodiscard]] bool isIncludable(const SecondOpinionFinding& finding);

/// Whether the shadow is wide enough to be of dust above the photosites, which the aperture decides about.
[[nodiscard]] bool isWideShadow(const SecondOpinionFinding& finding);

/// The f-number from which a shadow of this depth, seen at `fNumber`, is darker than 1 % and so can be seen: a grain
/// hides a share of the lens's pupil that grows with the square of the f-number.
[[nodiscard]] double visibleFrom(double depth, double fNumber);

}  // namespace tessaly::CandidateSelection
