#include "calibration/CalibrationSentences.h"

#include <fmt/format.h>

namespace tessaly {
namespace {

// A format of the table of texts as one of fmt: "%@" is "{}", "%+.1f" is "{:+.1f}", "%%" is "%".
std::string fmtFormat(std::string_view format) {
  std::string result;
  for (std::size_t at = 0; at < format.size(); ++at) {
    if (format[at] != '%') {
      result += format[at];
      continue;
    }
    const std::size_t end = format.find_first_of("%@df", at + 1);
    const std::string_view placeholder = format.substr(at + 1, end - at);
    if (placeholder == "%") {
      result += '%';
    } else if (placeholder == "@") {
      result += "{}";
    } else {
      result.append("{:").append(placeholder).append("}");
    }
    at = end;
  }
  return result;
}

// Tests look for the formats that are given to this function.
template <typename... Values>
std::string sentence(std::string_view format, const Values&... values) {
  return fmt::format(fmt::runtime(fmtFormat(format)), values...);
}

}  // namespace

namespace CandidateReasons {

std::string pixelInBrightFrames() {
  return sentence("Isolated response anomaly repeated in bright-field frames");
}

std::string pixelInDarkFrames() {
  return sentence("Abnormal pixel repeated in dark frames");
}

std::string repeatedPixel(std::int64_t groups) {
  return sentence("Repeated in %d independent exposure groups", groups);
}

std::string shadowInBrightFrames() {
  return sentence("Compact fixed shadow repeated in bright-field frames");
}

std::string repeatedSpot(std::int64_t groups) {
  return sentence("Fixed sensor spot repeated in %d bright-field exposure groups", groups);
}

std::string fixedColumn(double sigma, double agreement, std::int64_t groups) {
  return sentence("Fixed column anomaly %.1fσ; same sign in %.0f%% of frames; repeated across %d exposure groups",
                  sigma, agreement * 100, groups);
}

std::string partialColumn(double offset, std::int64_t groups) {
  return sentence(
      "Partial defective column below a fixed pixel; column offset %+.1f; repeated across %d exposure groups", offset,
      groups);
}

std::string weakColumn(double u, double sigma) {
  return sentence("Weak column: %+.2f u (%.1fσ)", u, sigma);
}

std::string weakColumnInLight(double percent, double sigma) {
  return sentence("Weak column: %+.2f%% of the light (%.1fσ)", percent, sigma);
}

std::string weakPartialColumn(double u, double sigma) {
  return sentence("Weak partial column: %+.2f u (%.1fσ)", u, sigma);
}

std::string weakPartialColumnInLight(double percent, double sigma) {
  return sentence("Weak partial column: %+.2f%% of the light (%.1fσ)", percent, sigma);
}

std::string softShadow(double percent, double sigma) {
  return sentence("Soft shadow: %.1f%% of the light (%.1fσ)", percent, sigma);
}

std::string oddResponse(double percent, double sigma) {
  return sentence("Response %+.1f%% from its neighbours (%.1fσ)", percent, sigma);
}

std::string warmPixel(double u, double sigma) {
  return sentence("Warm: %+.1f u in dark frames (%.1fσ)", u, sigma);
}

std::string unsteadyPixel(double times, double sigma) {
  return sentence("Unsteady: %.1f times the usual noise (%.1fσ)", times, sigma);
}

std::string manuallyAdded() {
  return sentence("Manually added by user");
}

std::string confirmedSpot() {
  return sentence("User-confirmed fixed sensor spot");
}

}  // namespace CandidateReasons

namespace ProgressMessages {

std::string reading(std::string_view file) {
  return sentence("Reading %@", file);
}

std::string analyzing(std::string_view file) {
  return sentence("Analyzing %@", file);
}

std::string checkingPartialColumn(std::string_view file) {
  return sentence("Checking partial defective column in %@", file);
}

std::string lookingClosely(std::string_view file) {
  return sentence("Looking closely at %@", file);
}

}  // namespace ProgressMessages
}  // namespace tessaly
