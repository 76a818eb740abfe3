#include "batch/BatchProcessor.h"

#include "batch/BatchRun.h"
#include "platform/Text.h"

#include <atomic>
#include <system_error>
#include <thread>
#include <utility>

namespace tessaly {

namespace {

constexpr const char* secondRun = "This batch has been started already.";

}  // namespace

struct BatchProcessor::Implementation {
  explicit Implementation(RepairFunction repairFunction) : repair(std::move(repairFunction)) {}

  [[nodiscard]] BatchSummary run(const BatchSources& sources, BatchOrder order) const {
    return runBatch(sources, std::move(order), repair, cancelled);
  }

  const RepairFunction repair;
  CancelFlag cancelled;
  std::atomic<bool> started = false;
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

// NOLINTNEXTLINE(readability-function-size): the one that other programs call, each value by itself
void BatchProcessor::process(const std::filesystem::path& inputDirectory, const std::filesystem::path& outputDirectory,
                             CameraProfile profile, std::int64_t workers, BatchOptions options,
                             ProgressHandler progress, const CompletionHandler& completion) {
  if (implementation_->started.exchange(true)) {
    callContained(completion, failureOfBatch(secondRun));
    return;
  }
  BatchOrder order{outputDirectory, std::move(profile), workers, options, std::move(progress), nullptr};
  try {
    implementation_->thread = std::thread(
        [implementation = implementation_, sources = sourcesInFolder(inputDirectory), order = std::move(order),
         completion]() mutable { callContained(completion, implementation->run(sources, std::move(order))); });
  } catch (const std::system_error& error) {
    callContained(completion, failureOfBatch(exceptionMessage(error)));
  }
}

BatchSummary BatchProcessor::processFolder(const std::filesystem::path& inputDirectory, BatchOrder order) {
  return implementation_->run(sourcesInFolder(inputDirectory), std::move(order));
}

BatchSummary BatchProcessor::processFiles(std::vector<std::filesystem::path> sources, BatchOrder order) {
  return implementation_->run(listedSources(std::move(sources)), std::move(order));
}

BatchSummary BatchProcessor::processSelection(SourceSelection selection, BatchOrder order) {
  return implementation_->run(selectedSources(std::move(selection)), std::move(order));
}

}  // namespace tessaly
