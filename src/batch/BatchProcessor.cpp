#include "batch/BatchProcessor.h"

#include "batch/BatchRun.h"
#include "platform/Text.h"

#include <algorithm>
#include <cassert>
#include <system_error>
#include <thread>
#include <utility>

namespace tessaly {

namespace {

constexpr std::int64_t mostWorkers = 4;

std::size_t clampedWorkers(std::int64_t workers) {
  return static_cast<std::size_t>(std::clamp<std::int64_t>(workers, 1, mostWorkers));
}

}  // namespace

struct BatchProcessor::Implementation {
  explicit Implementation(RepairFunction repairFunction) : repair(std::move(repairFunction)) {}

  [[nodiscard]] BatchSummary run(BatchOrder order) const { return runBatch(std::move(order), repair, cancelled); }

  const RepairFunction repair;
  CancelFlag cancelled;
  std::thread thread;  ///< of process()
};

BatchProcessor::BatchProcessor()
    : BatchProcessor([](const auto& source, const auto& destination, const auto& profile, auto& workspace) {
        return DNGWriter::repairCopy(source, destination, profile, workspace);
      }) {}

BatchProcessor::BatchProcessor(RepairFunction repair)
    : implementation_(std::make_shared<Implementation>(std::move(repair))) {}

BatchProcessor::~BatchProcessor() {
  std::thread& thread = implementation_->thread;
  if (!thread.joinable()) return;
  if (thread.get_id() == std::this_thread::get_id()) {
    thread.detach();  // the completion handler dropped the processor; the thread keeps what it still needs
  } else {
    thread.join();
  }
}

void BatchProcessor::cancel() {
  implementation_->cancelled.set();
}

// What a batch is told is what window and command line hand over: one value each, no record of their own.
// NOLINTBEGIN(readability-function-size)
void BatchProcessor::process(const std::filesystem::path& inputDirectory, const std::filesystem::path& outputDirectory,
                             CameraProfile profile, std::int64_t workers, BatchOptions options,
                             ProgressHandler progress, const CompletionHandler& completion) {
  assert(!implementation_->thread.joinable());
  BatchOrder order{sourcesInFolder(inputDirectory),
                   outputDirectory,
                   std::move(profile),
                   clampedWorkers(workers),
                   options,
                   std::move(progress),
                   nullptr};
  try {
    implementation_->thread =
        std::thread([implementation = implementation_, order = std::move(order), completion]() mutable {
          callContained(completion, implementation->run(std::move(order)));
        });
  } catch (const std::system_error& error) {
    callContained(completion, failureOfBatch(exceptionMessage(error)));
  }
}

BatchSummary BatchProcessor::processFolder(const std::filesystem::path& inputDirectory,
                                           const std::filesystem::path& outputDirectory, const CameraProfile& profile,
                                           std::int64_t workers, const BatchOptions& options,
                                           const ProgressHandler& progress, const FileHandler& file) {
  return implementation_->run(
      {sourcesInFolder(inputDirectory), outputDirectory, profile, clampedWorkers(workers), options, progress, file});
}

BatchSummary BatchProcessor::processFiles(const std::vector<std::filesystem::path>& sources,
                                          const std::filesystem::path& outputDirectory, const CameraProfile& profile,
                                          std::int64_t workers, const BatchOptions& options,
                                          const ProgressHandler& progress, const FileHandler& file) {
  return implementation_->run(
      {listedSources(sources), outputDirectory, profile, clampedWorkers(workers), options, progress, file});
}
// NOLINTEND(readability-function-size)

}  // namespace tessaly
