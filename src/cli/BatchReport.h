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
  explicit BatchReport(std::int64_t total);

  /// A failed file prints its two lines, each other file one; on a terminal the bar moves instead of the latter.
  void finished(const BatchFileOutcome& outcome);

  /// The request to stop has come.
  void stopping();

 private:
  std::mutex lock_;  ///< held while printing, so that the lines come in the order of their numbers
  BatchProgress progress_;
  bool isStopping_ = false;
  ProgressDisplay display_;
};

}  // namespace tessaly::cli
