// The numbers that are typed while candidates are reviewed: the pixel threshold and whole numbers.
//
// Pure; safe from any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tessaly::CandidateSelection {

/// The pixel threshold that applies when nothing valid was entered.
inline constexpr double defaultPixelConfidence = 0.98;

/// The fraction 0.5 to 1 that a confidence text ("95", " 95 % ") stands for; nothing when it is no number from 50 to
/// 100.
[[nodiscard]] std::optional<double> parseConfidence(std::string_view text);

/// `parseConfidence`, or InvalidInput.
[[nodiscard]] double requireConfidence(std::string_view text);

/// A whole number: an optional sign, then decimal digits only, no spaces; nothing when it does not fit 64 bits.
[[nodiscard]] std::optional<std::int64_t> parseWholeNumber(std::string_view text);

}  // namespace tessaly::CandidateSelection
