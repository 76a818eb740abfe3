#include "batch/BatchState.h"

#include "batch/RepairLog.h"
#include "platform/Text.h"

#include <utility>

namespace tessaly {

// The space is taken before the first file, so that recording a file that was repaired cannot fail for want of it.
BatchState::BatchState(std::size_t total) {
  counts_.total = static_cast<std::int64_t>(total);
  failures_.reserve(total);
  rows_.reserve(total + 1);
  known_.resize(total);
  rows_.emplace_back(RepairLog::header);
}

BatchProgress BatchState::record(std::size_t number, const BatchFileOutcome& outcome) {
  std::string row = RepairLog::row(outcome);
  std::string name = displayName(outcome.source);
  BatchFailure failure{name, outcome.message, outcome.obstacle};
  const std::lock_guard guard(lock_);
  known_[number] = true;
  counts_.count(outcome);
  if (outcome.status == BatchFileOutcome::Status::failed) failures_.push_back(std::move(failure));
  rows_.push_back(std::move(row));
  BatchProgress snapshot = counts_;
  snapshot.currentFilename = std::move(name);
  return snapshot;
}

bool BatchState::knows(std::size_t number) const {
  const std::lock_guard guard(lock_);
  return known_[number];
}

void BatchState::report(BatchSummary& summary) const {
  const std::lock_guard guard(lock_);
  summary.total = counts_.total;
  summary.succeeded = counts_.succeeded;
  summary.failed = counts_.failed;
  summary.skipped = counts_.skipped;
  summary.failures = failures_;
}

std::vector<std::string> BatchState::rows() const {
  const std::lock_guard guard(lock_);
  return rows_;
}

}  // namespace tessaly
