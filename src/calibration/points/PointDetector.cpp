#include "calibration/points/PointDetector.h"

#include "calibration/CalibrationSentences.h"
#include "calibration/points/PixelSearch.h"
#include "calibration/points/PointFindings.h"
#include "calibration/points/SpotSearch.h"

namespace tessaly::CalibrationEngine {
namespace {

// Points are never lines.
std::string reason(CandidateKind kind, bool isDark) {
  switch (kind) {
    case CandidateKind::spot:
      return CandidateReasons::shadowInBrightFrames();
    case CandidateKind::pixel:
      return isDark ? CandidateReasons::pixelInDarkFrames() : CandidateReasons::pixelInBrightFrames();
    case CandidateKind::line:
      break;
  }
  return {};
}

CalibrationCandidate candidate(const PointFinding& finding, const DeviationMap& map) {
  CalibrationCandidate result;
  result.id = UUID::random();
  result.kind = finding.kind;
  result.x = map.metadata().activeX + finding.x;
  result.yStart = map.metadata().activeY + finding.y;
  result.yEnd = result.yStart;
  result.radiusX = finding.radiusX;
  result.radiusY = finding.radiusY;
  result.confidence = finding.confidence;
  result.reason = reason(finding.kind, map.isDark());
  return result;
}

}  // namespace

std::vector<CalibrationCandidate> detectPointGroup(DeviationMap& map) {
  PointFindings findings = findPixels(map);
  if (!map.isDark()) findings.add(findSpots(map));
  std::vector<CalibrationCandidate> candidates;
  for (const PointFinding& finding : findings.best())
    candidates.push_back(candidate(finding, map));
  return candidates;
}

}  // namespace tessaly::CalibrationEngine
