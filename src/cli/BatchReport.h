// Tells on standard error how the files of a batch end, one after the other as they finish.
#pragma once

#include "batch/BatchRecords.h"
#include "cli/ProgressDisplay.h"

#include <cstdint>
#include <mutex>

namespace tessaly::cli {

/// Called from the batch's workers, several at once.
class BatchReport {
 public:
  explicit BatchReport(std::int64_t total) { progress_.total = total; }

  /// A failed file prints its two lines, each other file one; a terminal shows a bar besides.
  void finished(const BatchFileOutcome& outcome);

 private:
  void count(const BatchFileOutcome& outcome);

  std::mutex lock_;  ///< held while printing, so that the lines come in the order of their numbers
  BatchProgress progress_;
  ProgressDisplay display_;
};

}  // namespace tessaly::cli
