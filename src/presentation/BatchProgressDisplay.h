// What the status line and the progress bar of a running batch show. Snapshots may come in any order: one that comes
// late never moves the display back, and after a stop request the status no longer changes.
//
// For one thread: the one that draws.
#pragma once

#include "batch/BatchRecords.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tessaly {

class BatchProgressDisplay {
 public:
  /// Whether the display has changed.
  bool show(const BatchProgress& progress);
  void stopRequested() { stopping_ = true; }

  [[nodiscard]] std::string status() const;
  [[nodiscard]] std::int64_t barValue() const;
  [[nodiscard]] std::int64_t barMaximum() const;  ///< at least 1

 private:
  std::optional<BatchProgress> latest_;
  bool stopping_ = false;
};

}  // namespace tessaly
