#include "calibration/points/PointFindings.h"

#include <algorithm>
#include <tuple>

namespace tessaly {
namespace {

bool isBetter(const PointFinding& left, const PointFinding& right) {
  const auto rank = [](const PointFinding& finding) {
    return std::tuple(-finding.confidence, reportRank(finding.kind), finding.index);
  };
  return rank(left) < rank(right);
}

}  // namespace

void PointFindings::add(const PointFinding& finding) {
  findings_.push_back(finding);
  if (findings_.size() < 8 * capacity) return;
  std::nth_element(findings_.begin(), findings_.begin() + capacity, findings_.end(), isBetter);
  findings_.resize(capacity);
}

void PointFindings::add(const PointFindings& others) {
  for (const PointFinding& finding : others.findings_)
    add(finding);
}

std::vector<PointFinding> PointFindings::best() const {
  std::vector<PointFinding> sorted = findings_;
  std::sort(sorted.begin(), sorted.end(), isBetter);
  if (sorted.size() > capacity) sorted.resize(capacity);
  return sorted;
}

}  // namespace tessaly
