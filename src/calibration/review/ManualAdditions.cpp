#include "calibration/review/ManualAdditions.h"

#include "calibration/CalibrationSentences.h"
#include "calibration/review/InvalidInput.h"
#include "calibration/review/NumberParsing.h"

#include <algorithm>
#include <string>
#include <utility>

namespace tessaly::CandidateSelection {
namespace {

using Kind = CalibrationCandidate::Kind;

constexpr std::int64_t leastManualRadius = 2;
constexpr std::int64_t greatestManualRadius = 64;

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

CalibrationCandidate manualCandidate(Kind kind, std::int64_t x, std::int64_t y, std::string reason) {
  CalibrationCandidate candidate;
  candidate.id = UUID::random();
  candidate.kind = kind;
  candidate.x = x;
  candidate.yStart = y;
  candidate.yEnd = y;
  candidate.confidence = 1.0;
  candidate.reason = std::move(reason);
  return candidate;
}

}  // namespace

CalibrationCandidate manualPixel(const DNGMetadata* metadata, std::string_view xText, std::string_view yText) {
  const DNGMetadata& result = requireResult(metadata);
  const std::int64_t x = coordinate(xText);
  const std::int64_t y = coordinate(yText);
  if (!isWithin(x, result.activeWidth) || !isWithin(y, result.activeHeight))
    throw InvalidInput("Enter valid active-area X and Y coordinates.");
  return manualCandidate(Kind::pixel, x + result.activeX, y + result.activeY, CandidateReasons::manuallyAdded());
}

CalibrationCandidate manualColumn(const DNGMetadata* metadata, std::string_view xText) {
  const DNGMetadata& result = requireResult(metadata);
  const std::int64_t x = coordinate(xText);
  if (!isWithin(x, result.activeWidth)) throw InvalidInput("Enter a valid active-area X coordinate.");
  CalibrationCandidate line =
      manualCandidate(Kind::line, x + result.activeX, result.activeY, CandidateReasons::manuallyAdded());
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
  CalibrationCandidate spot =
      manualCandidate(Kind::spot, x + result.activeX, y + result.activeY, CandidateReasons::confirmedSpot());
  spot.radiusX = radius;
  spot.radiusY = radius;
  return spot;
}

ManualFields fieldsFromCandidate(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  ManualFields fields;
  fields.x = candidate.x - metadata.activeX;
  const std::int64_t y = candidate.yStart - metadata.activeY;
  switch (candidate.kind) {
    case Kind::line:
      break;
    case Kind::spot:
      fields.radius = std::max(candidate.radiusX, candidate.radiusY);
      [[fallthrough]];
    case Kind::pixel:
      fields.y = y;
      break;
  }
  return fields;
}

}  // namespace tessaly::CandidateSelection
