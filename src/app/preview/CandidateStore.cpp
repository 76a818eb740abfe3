#include "app/preview/CandidateStore.h"

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
  detectedCount_ = count();
  adopt(accepted);
  emit wasReset();
  emit inclusionChanged();
}

std::optional<int> CandidateStore::rowOfSamePlace(const CalibrationCandidate& candidate) const {
  const auto same = std::ranges::find(candidates_, placeOf(candidate), placeOf);
  if (same == candidates_.end()) return std::nullopt;
  return static_cast<int>(same - candidates_.begin());
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

void CandidateStore::setIncluded(const std::vector<int>& rows, bool included) {
  for (const int row : rows)
    included_[static_cast<std::size_t>(row)] = included ? 1 : 0;
  includedCount_ = static_cast<int>(std::count(included_.begin(), included_.end(), 1));
  emit inclusionChanged();
}

void CandidateStore::adopt(const std::set<UUID>& accepted) {
  included_.clear();
  for (const CalibrationCandidate& candidate : candidates_)
    included_.push_back(accepted.contains(candidate.id) ? 1 : 0);
  includedCount_ = static_cast<int>(std::count(included_.begin(), included_.end(), 1));
}

}  // namespace tessaly
