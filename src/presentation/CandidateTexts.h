// How a candidate is described to the photographer, in the interface's language. Positions are active coordinates.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <string>
#include <string_view>

namespace tessaly::CandidateTexts {

/// The kinds that a photographer tells apart: a column that begins below the first row is one of its own.
enum class Kind { pixel, column, partialColumn, fixedSpot };

[[nodiscard]] Kind kindOf(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

/// The English name of a kind.
[[nodiscard]] std::string_view name(Kind kind);

[[nodiscard]] std::string kind(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

/// "17, 933", "x 3021", "x 40–41, y 812–3999", "811, 2044  r 6".
[[nodiscard]] std::string position(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

/// "98 %".
[[nodiscard]] std::string confidence(const CalibrationCandidate& candidate);

[[nodiscard]] std::string reason(const CalibrationCandidate& candidate);

}  // namespace tessaly::CandidateTexts
