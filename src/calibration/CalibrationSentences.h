// The English sentences of calibration: why something is a candidate, and what an analysis is doing.
//
// They are made here and nowhere else. They are kept and reported as they are and translated where they are shown; each
// format is therefore also a key of the table of texts, which its tests check.
//
// Pure; safe from any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tessaly {

namespace CandidateReasons {

/// A photosite in one exposure group.
[[nodiscard]] std::string pixelInBrightFrames();
[[nodiscard]] std::string pixelInDarkFrames();

/// A photosite in several exposure groups.
[[nodiscard]] std::string repeatedPixel(std::int64_t groups);

/// A shadow in one exposure group, and in several.
[[nodiscard]] std::string shadowInBrightFrames();
[[nodiscard]] std::string repeatedSpot(std::int64_t groups);

/// `agreement` is the fraction of frames of the same sign.
[[nodiscard]] std::string fixedColumn(double sigma, double agreement, std::int64_t groups);

/// `offset` is that of the column from its neighbours, in residual units.
[[nodiscard]] std::string partialColumn(double offset, std::int64_t groups);

/// What the second opinion found. `u` is a raw unit of a 14-bit range, `percent` a share of the light, `sigma` the
/// strength in robust standard deviations.
[[nodiscard]] std::string weakColumn(double u, double sigma);
[[nodiscard]] std::string weakColumnInLight(double percent, double sigma);
[[nodiscard]] std::string weakPartialColumn(double u, double sigma);
[[nodiscard]] std::string weakPartialColumnInLight(double percent, double sigma);
[[nodiscard]] std::string softShadow(double percent, double sigma);
[[nodiscard]] std::string oddResponse(double percent, double sigma);
[[nodiscard]] std::string warmPixel(double u, double sigma);
[[nodiscard]] std::string unsteadyPixel(double times, double sigma);

/// What was added by hand.
[[nodiscard]] std::string manuallyAdded();
[[nodiscard]] std::string confirmedSpot();

}  // namespace CandidateReasons

/// What the analysis does with a file, which is named as it is shown.
namespace ProgressMessages {

[[nodiscard]] std::string reading(std::string_view file);
[[nodiscard]] std::string analyzing(std::string_view file);
[[nodiscard]] std::string checkingPartialColumn(std::string_view file);
[[nodiscard]] std::string lookingClosely(std::string_view file);

}  // namespace ProgressMessages
}  // namespace tessaly
