#include "calibration/review/Proposals.h"

#include "calibration/second/Confirmation.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>
#include <utility>

namespace tessaly::CandidateSelection {
namespace {

using Finder = SecondOpinionFinding::Finder;

constexpr std::int64_t widestSpot = 5;
constexpr double leastSpotDepth = 0.05;
constexpr double leastVisibleDepth = 0.01;

/// The documented candidates, prepared for being asked about.
class Documented {
 public:
  explicit Documented(const std::vector<CalibrationCandidate>& candidates) {
    for (const CalibrationCandidate& candidate : candidates) {
      if (candidate.kind == CandidateKind::pixel) {
        photosites_.emplace(candidate.x, candidate.yStart);
      } else {
        shapes_.push_back(&candidate);
      }
    }
  }

  [[nodiscard]] bool tells(const CalibrationCandidate& found) const {
    if (found.kind == CandidateKind::pixel) return photosites_.contains({found.x, found.yStart});
    return std::any_of(shapes_.begin(), shapes_.end(),
                       [&](const CalibrationCandidate* shape) { return second::isSameDefect(*shape, found); });
  }

 private:
  std::set<std::pair<std::int64_t, std::int64_t>> photosites_;
  std::vector<const CalibrationCandidate*> shapes_;
};

}  // namespace

std::vector<SecondOpinionFinding> proposals(const CalibrationResult& result) {
  std::vector<SecondOpinionFinding> shown;
  if (!result.secondOpinion) return shown;
  const Documented documented(result.candidates);
  for (const SecondOpinionFinding& finding : result.secondOpinion->findings)
    if (!documented.tells(finding.candidate)) shown.push_back(finding);
  return shown;
}

bool isWideShadow(const SecondOpinionFinding& finding) {
  return finding.finder == Finder::shadow &&
         std::max(finding.candidate.radiusX, finding.candidate.radiusY) > widestSpot;
}

bool isIncludable(const SecondOpinionFinding& finding) {
  return finding.finder != Finder::shadow || (!isWideShadow(finding) && finding.effect >= leastSpotDepth);
}

double visibleFrom(double depth, double fNumber) {
  return fNumber * std::sqrt(leastVisibleDepth / depth);
}

}  // namespace tessaly::CandidateSelection
