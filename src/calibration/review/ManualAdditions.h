// The candidates that are added by hand, and what a click on a marker fills into the fields for them.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace tessaly::CandidateSelection {

/// A candidate from what was typed, in active coordinates of `metadata`; throws InvalidInput. No result (a null
/// `metadata`) is refused first.
[[nodiscard]] CalibrationCandidate manualPixel(const DNGMetadata* metadata, std::string_view x, std::string_view y);
[[nodiscard]] CalibrationCandidate manualColumn(const DNGMetadata* metadata, std::string_view x);
[[nodiscard]] CalibrationCandidate manualSpot(const DNGMetadata* metadata, std::string_view x, std::string_view y,
                                              std::string_view radius);

/// What a click on a candidate's marker fills into the manual fields, in active coordinates.
struct ManualFields {
  std::int64_t x = 0;
  std::optional<std::int64_t> y;
  std::optional<std::int64_t> radius;

  bool operator==(const ManualFields&) const = default;
};
[[nodiscard]] ManualFields fieldsFromCandidate(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

}  // namespace tessaly::CandidateSelection
