// The JSON form of a candidate: one object whose keys are the field names, in the order of the fields; an absent
// optional field has no key.
//
// Read: keys in any order, unknown ones ignored, null for an optional key means absent; a whole number may be written
// as 4.0, but neither as 4.5 nor as "4". Decoding is for programs that the engine is linked into and keep candidates;
// this program writes them only. Stateless; safe from several threads.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <nlohmann/json_fwd.hpp>

namespace tessaly {

[[nodiscard]] nlohmann::ordered_json toJSON(const CalibrationCandidate& candidate);

/// The same with the key "finder" behind: dim, warm, unsteady, column, run or shadow.
[[nodiscard]] nlohmann::ordered_json toJSON(const SecondOpinionFinding& finding);

/// The way back, for programs that use the engine and keep candidates; nothing in this repository but its tests reads
/// them. Throws std::invalid_argument, which names the key: "kind" is none of pixel, line and spot.
[[nodiscard]] CalibrationCandidate candidateFromJSON(const nlohmann::ordered_json& json);

}  // namespace tessaly
