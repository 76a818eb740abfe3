#include "app/preview/CandidateStore.h"

#include "calibration/review/Preselection.h"
#include "calibration/review/Proposals.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace tessaly {
namespace {

// A spot that is added by hand is a circle; the one that was detected there may be narrower in one direction.
auto placeOf(const CalibrationCandidate& candidate) {
  return std::tuple(candidate.kind, candidate.x, candidate.yStart, candidate.yEnd, candidate.width,
                    std::max(candidate.radiusX, candidate.radiusY));
}

}  // namespace

std::set<UUID> CandidateStore::accepted() const {
  std::set<UUID> ids;
  for (int row = 0; row < count(); ++row)
    if (isIncluded(row)) ids.insert(at(row).id);
  return ids;
}

void CandidateStore::reset(DNGMetadata metadata, std::vector<CalibrationCandidate> candidates,
                           const std::set<UUID>& accepted) {
  emit aboutToReset();
  metadata_ = std::move(metadata);
  candidates_ = std::move(candidates);
  documentedCount_ = count();
  opinion_ = {};
  isOpinionShown_ = false;
  adopt(accepted);
  emit wasReset();
  emit inclusionChanged();
}

const SecondOpinionFinding* CandidateStore::proposal(int row) const {
  return isProposed(row) ? &opinion_.proposals[static_cast<std::size_t>(row - documentedCount_)] : nullptr;
}

std::optional<bool> CandidateStore::confirmed(int row) const {
  if (!isOpinionShown_ || row >= std::ssize(opinion_.confirmed)) return std::nullopt;
  return opinion_.confirmed[static_cast<std::size_t>(row)];
}

bool CandidateStore::isIncludable(int row) const {
  const SecondOpinionFinding* finding = proposal(row);
  return finding == nullptr || CandidateSelection::isIncludable(*finding);
}

std::vector<int> CandidateStore::includableRows() const {
  std::vector<int> rows;
  for (int row = 0; row < count(); ++row)
    if (isIncludable(row)) rows.push_back(row);
  return rows;
}

std::vector<int> CandidateStore::includedUnconfirmed() const {
  std::vector<int> rows;
  for (int row = 0; row < documentedCount_; ++row)
    if (isIncluded(row) && confirmed(row) == false) rows.push_back(row);
  return rows;
}

void CandidateStore::showOpinion(bool shown) {
  if (shown == isOpinionShown_) return;
  emit aboutToReset();
  const std::set<UUID> kept = accepted();
  const auto first = candidates_.begin() + documentedCount_;
  if (shown) {
    std::vector<CalibrationCandidate> rows;
    rows.reserve(opinion_.proposals.size());
    for (const SecondOpinionFinding& finding : opinion_.proposals)
      rows.push_back(finding.candidate);
    candidates_.insert(first, rows.begin(), rows.end());
  } else {
    candidates_.erase(first, first + shownProposals());
  }
  isOpinionShown_ = shown;
  adopt(kept);
  emit wasReset();
  emit inclusionChanged();
}

std::optional<int> CandidateStore::rowOfSamePlace(const CalibrationCandidate& candidate) const {
  for (int row = 0; row < count(); ++row)
    if (isIncludable(row) && placeOf(at(row)) == placeOf(candidate)) return row;
  return std::nullopt;
}

void CandidateStore::append(CalibrationCandidate candidate) {
  emit aboutToAppend();
  candidates_.push_back(std::move(candidate));
  included_.push_back(1);
  ++includedCount_;
  emit appended();
  emit inclusionChanged();
}

void CandidateStore::remove(int row) {
  emit aboutToRemove(row);
  candidates_.erase(candidates_.begin() + row);
  includedCount_ -= included_[static_cast<std::size_t>(row)];
  included_.erase(included_.begin() + row);
  emit removed();
  emit inclusionChanged();
}

void CandidateStore::setAccepted(const std::set<UUID>& accepted) {
  adopt(accepted);
  emit inclusionChanged();
}

void CandidateStore::includeMatchingPixels(double confidence) {
  std::vector<CalibrationCandidate> chosen;
  std::set<UUID> proposed;
  chosen.reserve(candidates_.size());
  for (int row = 0; row < count(); ++row) {
    if (!isProposed(row)) {
      chosen.push_back(at(row));
    } else if (isIncluded(row)) {
      proposed.insert(at(row).id);
    }
  }
  std::set<UUID> ids = CandidateSelection::withMatchingPixels(chosen, accepted(), confidence);
  ids.merge(proposed);
  setAccepted(ids);
}

void CandidateStore::setIncluded(const std::vector<int>& rows, bool included) {
  std::optional<int> refused;
  for (const int row : rows) {
    const bool isPossible = !included || isIncludable(row);
    if (!isPossible && !refused) refused = row;
    included_[static_cast<std::size_t>(row)] = included && isPossible ? 1 : 0;
  }
  includedCount_ = static_cast<int>(std::count(included_.begin(), included_.end(), 1));
  emit inclusionChanged();
  if (refused) emit inclusionRefused(*refused);
}

void CandidateStore::adopt(const std::set<UUID>& accepted) {
  included_.clear();
  for (const CalibrationCandidate& candidate : candidates_)
    included_.push_back(accepted.contains(candidate.id) ? 1 : 0);
  includedCount_ = static_cast<int>(std::count(included_.begin(), included_.end(), 1));
}

}  // namespace tessaly
