#include "calibration/review/Preselection.h"

namespace tessaly::CandidateSelection {
namespace {

using Kind = CalibrationCandidate::Kind;

bool isPreselectedLine(const CalibrationCandidate& line) {
  if (line.evidenceSigma)
    return *line.evidenceSigma >= 5.0 && line.frameAgreement >= 0.95 && line.exposureGroupCount >= 2;
  return line.frameAgreement >= 0.9 && line.exposureGroupCount > 2;
}

}  // namespace

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

}  // namespace tessaly::CandidateSelection
