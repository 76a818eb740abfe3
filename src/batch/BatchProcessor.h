// Repairs every source file at the top level of one folder with one camera profile, several files at a time.
//
// One instance serves one run. Callbacks come on worker threads, possibly several at once; `completion` comes once, at
// the very end, on the background thread of the run.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "batch/BatchRecords.h"
#include "profile/CameraProfile.h"

namespace tessaly {

/// The outcome of one file, for callers that report each file (the command line).
struct BatchFileOutcome {
  enum class Status { success, failed, skipped };
  std::filesystem::path source;
  Status status = Status::success;
  std::int64_t repairedSamples = 0;
  std::string message;    ///< of a failure, in the interface's language
  std::string technical;  ///< of a failure, the innermost error's English description
};

class BatchProcessor {
 public:
  using ProgressHandler = std::function<void(const BatchProgress&)>;
  using CompletionHandler = std::function<void(const BatchSummary&)>;
  using FileHandler = std::function<void(const BatchFileOutcome&)>;

  BatchProcessor();
  ~BatchProcessor();  ///< waits for a run that is still going on

  /// Lets files in progress finish and drops the rest. Any thread, any number of times; never undone.
  void cancel();

  /// Starts the run and returns at once. `workers` is clamped to 1…4.
  void process(std::filesystem::path inputDirectory, std::filesystem::path outputDirectory, CameraProfile profile,
               std::int64_t workers, BatchOptions options, ProgressHandler progress, CompletionHandler completion);

  /// The same for exactly these files instead of a folder's listing; waits for the end. `file`, when given, is called
  /// like `progress`, before it.
  BatchSummary processFiles(std::vector<std::filesystem::path> sources, std::filesystem::path outputDirectory,
                            CameraProfile profile, std::int64_t workers, BatchOptions options, ProgressHandler progress,
                            FileHandler file);

  // Further entry points that the command line needs are added by the owner of this folder.

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace tessaly
