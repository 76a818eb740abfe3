// What the window and the command line say about the second opinion: marks of rows and what they mean, honest words
// about dust, and what a session of calibration frames lacks.
//
// Pure apart from reading the interface's language; safe from any thread.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tessaly::SecondOpinionTexts {

/// "second opinion" before what it proposes, "confirmed" or "not confirmed" before what is documented; else nothing.
[[nodiscard]] std::optional<std::string> mark(bool isProposed, std::optional<bool> confirmed);

/// One sentence about what "confirmed" or "not confirmed" means.
[[nodiscard]] std::string meaning(bool confirmed);

/// What to know before a proposal is included: for shadows whether they can be, from which aperture they are seen where
/// that of the flats is known, and what to do instead.
[[nodiscard]] std::string advice(const SecondOpinionFinding& finding, std::optional<double> fNumber);

/// The f-number of the brightest setting that tells one.
[[nodiscard]] std::optional<double> fNumberOf(const SecondOpinion& opinion);

/// How many proposals there are and how many documented candidates are not confirmed, and what the session lacks.
[[nodiscard]] std::string summary(const CalibrationResult& result);

/// What a session would show more with, measured from its noise; empty when it lacks nothing.
[[nodiscard]] std::string lackText(std::span<const SettingFigures> settings);

/// After documented candidates that are not confirmed were excluded.
[[nodiscard]] std::string unconfirmedExcluded(std::int64_t count);

}  // namespace tessaly::SecondOpinionTexts
