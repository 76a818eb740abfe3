// How a candidate is described to the photographer, in the interface's language. Positions are active coordinates.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <array>
#include <string>
#include <string_view>

/// The kinds that a photographer tells apart, in the order in which they are shown, with their English names: a column
/// that begins below the first row is one of its own.
#define TESSALY_SHOWN_KINDS(make) \
  make(pixel, "Pixel") make(column, "Column") make(partialColumn, "Partial Column") make(fixedSpot, "Fixed Spot")

namespace tessaly::CandidateTexts {

#define TESSALY_CASE(kind, name) kind,
enum class Kind { TESSALY_SHOWN_KINDS(TESSALY_CASE) };
#undef TESSALY_CASE

#define TESSALY_LISTED(kind, name) Kind::kind,
inline constexpr std::array kinds{TESSALY_SHOWN_KINDS(TESSALY_LISTED)};
#undef TESSALY_LISTED

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
