// Makes a camera profile of the candidates that were confirmed.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "profile/CameraProfile.h"

#include <set>
#include <string_view>
#include <vector>

namespace tessaly::CandidateSelection {

/// A new profile of the included candidates, in their order. `metadata` null: no result yet. The checks, in order: a
/// result, a name that is not empty when trimmed, at least one included candidate; throws InvalidInput.
[[nodiscard]] CameraProfile makeProfile(const DNGMetadata* metadata, std::string_view name,
                                        const std::vector<CalibrationCandidate>& candidates,
                                        const std::set<UUID>& accepted);

}  // namespace tessaly::CandidateSelection
