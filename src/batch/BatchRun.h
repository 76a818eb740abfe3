// One run of a batch, from the listing of its sources to its log. Private to this folder: the processor's engine.
#pragma once

#include "batch/BatchProcessor.h"
#include "batch/SourceFiles.h"

#include <filesystem>
#include <functional>
#include <mutex>
#include <vector>

namespace tessaly {

/// The request to stop. Safe from any thread; its lock is never held together with that of a BatchState.
class CancelFlag {
 public:
  void set() {
    const std::lock_guard guard(lock_);
    cancelled_ = true;
  }

  [[nodiscard]] bool isSet() const {
    const std::lock_guard guard(lock_);
    return cancelled_;
  }

 private:
  mutable std::mutex lock_;
  bool cancelled_ = false;  ///< never cleared
};

/// Where the source files of a run are.
struct BatchSources {
  std::vector<std::filesystem::path> folders;
  std::function<SourceListing()> list;  ///< in the order of processing; may throw
};

[[nodiscard]] BatchSources sourcesInFolder(const std::filesystem::path& folder);

/// Exactly these files. Listing them fails only when not one of them exists.
[[nodiscard]] BatchSources listedSources(std::vector<std::filesystem::path> files);

/// What is chosen, listed when the run comes to it.
[[nodiscard]] BatchSources selectedSources(SourceSelection selection);

/// Calls a caller's handler, if there is one. What it throws must neither stop a run nor end the program.
template <typename Handler, typename Argument>
void callContained(const Handler& handler, const Argument& argument) {
  try {
    if (handler) handler(argument);
  } catch (...) {
  }
}

/// What a failure of the batch as a whole looks like; `message` is English.
[[nodiscard]] BatchSummary failureOfBatch(std::string message);

/// Runs to the end; every failure ends in the summary.
[[nodiscard]] BatchSummary runBatch(const BatchSources& sources, BatchOrder order,
                                    const BatchProcessor::RepairFunction& repair, const CancelFlag& cancelled);

}  // namespace tessaly
