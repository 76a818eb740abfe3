#include "calibration/review/ProfileBuilding.h"

#include "calibration/review/InvalidInput.h"
#include "platform/Text.h"

#include <algorithm>
#include <string>
#include <utility>

namespace tessaly::CandidateSelection {
namespace {

using Kind = CalibrationCandidate::Kind;

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
