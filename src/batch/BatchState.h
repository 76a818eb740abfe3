// What one run has done so far, shared by all of its workers: counts, failures and the lines of the log.
//
// Safe from any thread. Nothing is called and nothing is waited for while its lock is held.
#pragma once

#include "batch/BatchRecords.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace tessaly {

class BatchState {
 public:
  /// `total`: the number of source files listed.
  explicit BatchState(std::size_t total);

  /// Counts the finished source of that number in the list, keeps its line for the log and, of a failure, its message.
  /// When it throws, for want of memory, nothing has been recorded.
  BatchProgress record(std::size_t number, const BatchFileOutcome& outcome);

  /// Whether the source of that number has been recorded.
  [[nodiscard]] bool knows(std::size_t number) const;

  /// Puts the counts and failures into the summary.
  void report(BatchSummary& summary) const;

  /// The lines of the log, its header line first.
  [[nodiscard]] std::vector<std::string> rows() const;

 private:
  mutable std::mutex lock_;  ///< guards everything below
  BatchProgress counts_;     ///< its file name stays empty
  std::vector<BatchFailure> failures_;
  std::vector<std::string> rows_;
  std::vector<bool> known_;  ///< by the source's number
};

}  // namespace tessaly
