// Which candidates are included in a profile, and the candidates that are added by hand: the rules of the profile
// creation tab without its widgets, shared by window and command line.
//
// Failures are InvalidInput with the English text that is shown for them.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "profile/CameraProfile.h"

#include <cstdint>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// What was typed or selected cannot be used; what() is the English text for the user.
class InvalidInput final : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

namespace CandidateSelection {

/// The pixel threshold that applies when nothing valid was entered.
inline constexpr double defaultPixelConfidence = 0.98;

/// The fraction 0.5 to 1 that a confidence text ("95", " 95 % ") stands for; nothing when it is no number from 50 to
/// 100.
[[nodiscard]] std::optional<double> parseConfidence(std::string_view text);

/// `parseConfidence`, or InvalidInput.
[[nodiscard]] double requireConfidence(std::string_view text);

/// A whole number: an optional sign, then decimal digits only, no spaces; nothing when it does not fit 64 bits.
[[nodiscard]] std::optional<std::int64_t> parseWholeNumber(std::string_view text);

/// Whether a candidate starts included.
[[nodiscard]] bool isPreselected(const CalibrationCandidate& candidate, double pixelConfidence);

/// The ids of the candidates that start included.
[[nodiscard]] std::set<UUID> preselected(const std::vector<CalibrationCandidate>& candidates, double pixelConfidence);

/// `accepted` without pixels below the threshold and with all pixels at or above it; other kinds stay as they are.
[[nodiscard]] std::set<UUID> withMatchingPixels(const std::vector<CalibrationCandidate>& candidates,
                                                const std::set<UUID>& accepted, double pixelConfidence);

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

/// Whether a line starts below the first active row.
[[nodiscard]] bool isPartialColumn(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

/// A new profile of the included candidates, in their order. `metadata` null: no result yet. The checks, in order: a
/// result, a name that is not empty when trimmed, at least one included candidate; throws InvalidInput.
[[nodiscard]] CameraProfile makeProfile(const DNGMetadata* metadata, std::string_view name,
                                        const std::vector<CalibrationCandidate>& candidates,
                                        const std::set<UUID>& accepted);

}  // namespace CandidateSelection
}  // namespace tessaly
