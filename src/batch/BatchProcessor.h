// Repairs every source file at the top level of one folder with one camera profile, several files at a time.
//
// One instance serves one run. Callbacks come on worker threads, possibly several at once; `completion` comes once, at
// the very end, on the background thread of the run. What a callback throws is dropped.
#pragma once

#include "batch/BatchRecords.h"
#include "repair/RepairCopy.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace tessaly {

class BatchProcessor {
 public:
  static constexpr std::int64_t mostWorkers = 4;

  using ProgressHandler = BatchProgressHandler;
  using CompletionHandler = std::function<void(const BatchSummary&)>;

  /// What a worker does with one file: DNGWriter::repairCopy, or what a test puts in its place.
  using RepairFunction =
      std::function<DNGWriteResult(const std::filesystem::path& source, const std::filesystem::path& destination,
                                   const CameraProfile& profile, RepairWorkspace& workspace)>;

  BatchProcessor();
  explicit BatchProcessor(RepairFunction repair);
  ~BatchProcessor();  ///< waits for a run that is still going on, except on the run's own thread

  /// Lets files in progress finish and drops the rest. Any thread, any number of times; never undone.
  void cancel();

  /// Starts the run and returns at once. `workers` is clamped to 1…4. A second call starts nothing: its `completion`
  /// is told at once that it has failed.
  void process(const std::filesystem::path& inputDirectory, const std::filesystem::path& outputDirectory,
               CameraProfile profile, std::int64_t workers, BatchOptions options, ProgressHandler progress,
               const CompletionHandler& completion);

  /// The same on the caller's thread, with the summary as the result.
  BatchSummary processFolder(const std::filesystem::path& inputDirectory, BatchOrder order);

  /// The same for exactly these files, in this order, instead of a folder's listing. The folder of none of them may be
  /// the output folder. When not one of them exists that is a failure of the batch as a whole.
  BatchSummary processFiles(std::vector<std::filesystem::path> sources, BatchOrder order);

  /// The same for what is chosen; the folder for the copies is the order's. Nothing is looked for in that folder.
  BatchSummary processSelection(SourceSelection selection, BatchOrder order);

 private:
  struct Implementation;
  std::shared_ptr<Implementation> implementation_;  ///< shared with the thread of the run
};

}  // namespace tessaly
