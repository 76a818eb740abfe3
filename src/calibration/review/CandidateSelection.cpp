#include "calibration/review/CandidateSelection.h"

#include "platform/Text.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <system_error>
#include <utility>

namespace tessaly::CandidateSelection {
namespace {

using Kind = CalibrationCandidate::Kind;

constexpr std::int64_t leastManualRadius = 2;
constexpr std::int64_t greatestManualRadius = 64;

constexpr const char* manualReason = "Manually added by user";
constexpr const char* manualSpotReason = "User-confirmed fixed sensor spot";

// std::from_chars knows no plus sign.
std::string_view withoutPlus(std::string_view text) {
  const bool isSigned = text.starts_with('+') && !text.starts_with("+-");
  return isSigned ? text.substr(1) : text;
}

// The number that is the whole of the text; nothing when it is none or out of range.
template <typename Number>
std::optional<Number> parsedNumber(std::string_view text) {
  const std::string_view digits = withoutPlus(text);
  Number number{};
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return number;
}

const DNGMetadata& requireResult(const DNGMetadata* metadata) {
  if (metadata == nullptr) throw InvalidInput("Run defect detection first.");
  return *metadata;
}

// A coordinate from 0 on; what is no number is left of everything.
std::int64_t coordinate(std::string_view text) {
  return parseWholeNumber(text).value_or(-1);
}

bool isWithin(std::int64_t value, std::int64_t extent) {
  return value >= 0 && value < extent;
}

// Whether value ± radius stays within 0 … extent − 1; neither sum can overflow.
bool fits(std::int64_t value, std::int64_t radius, std::int64_t extent) {
  return value >= radius && value < extent - radius;
}

CalibrationCandidate manualCandidate(Kind kind, std::int64_t x, std::int64_t y, const char* reason) {
  CalibrationCandidate candidate;
  candidate.id = UUID::random();
  candidate.kind = kind;
  candidate.x = x;
  candidate.yStart = y;
  candidate.yEnd = y;
  candidate.confidence = 1.0;
  candidate.reason = reason;
  return candidate;
}

bool isPreselectedLine(const CalibrationCandidate& line) {
  if (line.evidenceSigma)
    return *line.evidenceSigma >= 5.0 && line.frameAgreement >= 0.95 && line.exposureGroupCount >= 2;
  return line.frameAgreement >= 0.9 && line.exposureGroupCount > 2;
}

// A centre that has a sample on either side, as a radius of 1 needs.
std::int64_t innerCentre(std::int64_t centre, std::int64_t extent) {
  return std::max<std::int64_t>(std::min(centre, extent - 2), 1);
}

std::int64_t limitedRadius(std::int64_t radius, std::int64_t centre, std::int64_t extent) {
  return std::max<std::int64_t>(std::min({radius, centre, extent - 1 - centre}), 1);
}

// A spot near the border of the plane can reach beyond it, which no profile allows: it is cut to lie inside.
DefectSpot spotInside(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  const std::int64_t x = innerCentre(candidate.x, metadata.rawWidth);
  const std::int64_t y = innerCentre(candidate.yStart, metadata.rawHeight);
  return {x,
          y,
          limitedRadius(candidate.radiusX, x, metadata.rawWidth),
          limitedRadius(candidate.radiusY, y, metadata.rawHeight),
          candidate.confidence,
          candidate.reason};
}

void addDefect(CameraProfile& profile, const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  switch (candidate.kind) {
    case Kind::pixel:
      profile.pixels.push_back({candidate.x, candidate.yStart, candidate.confidence, candidate.reason});
      break;
    case Kind::line:
      profile.lines.push_back(
          {candidate.x, candidate.yStart, candidate.yEnd, candidate.width, candidate.confidence, candidate.reason});
      break;
    case Kind::spot:
      profile.spots->push_back(spotInside(candidate, metadata));
      break;
  }
}

}  // namespace

std::optional<double> parseConfidence(std::string_view text) {
  if (!isValidUTF8(text)) return std::nullopt;
  std::string number = trimmed(text);
  std::erase(number, '%');
  const std::optional<double> percent = parsedNumber<double>(trimmed(number));
  if (!percent || !(*percent >= 50 && *percent <= 100)) return std::nullopt;
  return *percent / 100;
}

double requireConfidence(std::string_view text) {
  const std::optional<double> confidence = parseConfidence(text);
  if (!confidence) throw InvalidInput("Enter a pixel-confidence value from 50 to 100, such as 95 or 98.");
  return *confidence;
}

std::optional<std::int64_t> parseWholeNumber(std::string_view text) {
  return parsedNumber<std::int64_t>(text);
}

// Comparisons with a missing value or with one that is not a number are false.
bool isPreselected(const CalibrationCandidate& candidate, double pixelConfidence) {
  switch (candidate.kind) {
    case Kind::pixel:
      return candidate.confidence >= pixelConfidence;
    case Kind::spot:
      return candidate.confidence >= 0.98 && candidate.radiusX > 5 && candidate.radiusY > 5;
    case Kind::line:
      break;
  }
  return isPreselectedLine(candidate);
}

std::set<UUID> preselected(const std::vector<CalibrationCandidate>& candidates, double pixelConfidence) {
  std::set<UUID> ids;
  for (const CalibrationCandidate& candidate : candidates) {
    if (isPreselected(candidate, pixelConfidence)) ids.insert(candidate.id);
  }
  return ids;
}

std::set<UUID> withMatchingPixels(const std::vector<CalibrationCandidate>& candidates, const std::set<UUID>& accepted,
                                  double pixelConfidence) {
  std::set<UUID> ids;
  for (const CalibrationCandidate& candidate : candidates) {
    const bool isIncluded =
        candidate.kind == Kind::pixel ? candidate.confidence >= pixelConfidence : accepted.contains(candidate.id);
    if (isIncluded) ids.insert(candidate.id);
  }
  return ids;
}

CalibrationCandidate manualPixel(const DNGMetadata* metadata, std::string_view xText, std::string_view yText) {
  const DNGMetadata& result = requireResult(metadata);
  const std::int64_t x = coordinate(xText);
  const std::int64_t y = coordinate(yText);
  if (!isWithin(x, result.activeWidth) || !isWithin(y, result.activeHeight))
    throw InvalidInput("Enter valid active-area X and Y coordinates.");
  return manualCandidate(Kind::pixel, x + result.activeX, y + result.activeY, manualReason);
}

CalibrationCandidate manualColumn(const DNGMetadata* metadata, std::string_view xText) {
  const DNGMetadata& result = requireResult(metadata);
  const std::int64_t x = coordinate(xText);
  if (!isWithin(x, result.activeWidth)) throw InvalidInput("Enter a valid active-area X coordinate.");
  CalibrationCandidate line = manualCandidate(Kind::line, x + result.activeX, result.activeY, manualReason);
  line.yEnd = result.activeY + result.activeHeight - 1;
  return line;
}

CalibrationCandidate manualSpot(const DNGMetadata* metadata, std::string_view xText, std::string_view yText,
                                std::string_view radiusText) {
  const DNGMetadata& result = requireResult(metadata);
  const std::int64_t x = coordinate(xText);
  const std::int64_t y = coordinate(yText);
  const std::int64_t radius = coordinate(radiusText);
  const bool isValid = radius >= leastManualRadius && radius <= greatestManualRadius &&
                       fits(x, radius, result.activeWidth) && fits(y, radius, result.activeHeight);
  if (!isValid) throw InvalidInput("Enter valid active-area X and Y coordinates and a radius from 2 to 64.");
  CalibrationCandidate spot = manualCandidate(Kind::spot, x + result.activeX, y + result.activeY, manualSpotReason);
  spot.radiusX = radius;
  spot.radiusY = radius;
  return spot;
}

ManualFields fieldsFromCandidate(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  ManualFields fields;
  fields.x = candidate.x - metadata.activeX;
  if (candidate.kind == Kind::line) return fields;
  fields.y = candidate.yStart - metadata.activeY;
  if (candidate.kind == Kind::spot) fields.radius = std::max(candidate.radiusX, candidate.radiusY);
  return fields;
}

bool isPartialColumn(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  return candidate.kind == Kind::line && candidate.yStart > metadata.activeY;
}

CameraProfile makeProfile(const DNGMetadata* metadata, std::string_view name,
                          const std::vector<CalibrationCandidate>& candidates, const std::set<UUID>& accepted) {
  const DNGMetadata& result = requireResult(metadata);
  std::string profileName = trimmed(name);
  if (profileName.empty()) throw InvalidInput("Enter a camera profile name.");
  std::vector<const CalibrationCandidate*> included;
  for (const CalibrationCandidate& candidate : candidates) {
    if (accepted.contains(candidate.id)) included.push_back(&candidate);
  }
  if (included.empty()) throw InvalidInput("Include at least one confirmed defective pixel, column, or fixed spot.");
  CameraProfile profile = CameraProfile::empty(std::move(profileName), result);
  for (const CalibrationCandidate* candidate : included)
    addDefect(profile, *candidate, result);
  return profile;
}

}  // namespace tessaly::CandidateSelection
