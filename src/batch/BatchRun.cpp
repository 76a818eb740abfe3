#include "batch/BatchRun.h"

#include "batch/BatchState.h"
#include "batch/OutputFolder.h"
#include "batch/OutputNameAllocator.h"
#include "batch/RepairLog.h"
#include "batch/SourceFiles.h"
#include "dng/DNGError.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "platform/WorkQueue.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

namespace tessaly {

namespace {

using Paths = std::vector<std::filesystem::path>;

constexpr const char* sameFolders = "Input and output folders cannot be the same";
constexpr const char* noSources =
    "No DNG files were found at the top level of the selected folder. Select the folder that directly contains the "
    "source DNG files.";

constexpr std::int64_t mostWorkers = 4;

std::size_t clampedWorkers(std::int64_t workers) {
  return static_cast<std::size_t>(std::clamp<std::int64_t>(workers, 1, mostWorkers));
}

/// The names of all entries, hidden ones too; none when the folder cannot be listed.
std::vector<std::string> namesIn(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  try {
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(folder))
      names.push_back(entry.path().filename().native());
  } catch (const std::filesystem::filesystem_error&) {
    names.clear();
  }
  return names;
}

BatchFileOutcome skippedOutcome(const std::filesystem::path& source) {
  BatchFileOutcome outcome;
  outcome.source = source;
  outcome.status = BatchFileOutcome::Status::skipped;
  outcome.details = "Output file already exists";
  return outcome;
}

BatchFileOutcome failedOutcome(const std::filesystem::path& source, const std::exception& cause) {
  const DNGError error = DNGError::contextualize(cause, source);
  BatchFileOutcome outcome;
  outcome.source = source;
  outcome.status = BatchFileOutcome::Status::failed;
  outcome.details = errorDescription(error, AppLanguage::english);
  outcome.message = errorDescription(error);
  outcome.technical = error.innermost().what();
  return outcome;
}

/// The part of a run in which files are repaired.
class FileLoop {
 public:
  FileLoop(const BatchOrder& order, const BatchProcessor::RepairFunction& repair, const CancelFlag& cancelled,
           BatchState& state)
      : order_(order), repair_(repair), cancelled_(cancelled), state_(state) {}

  void run(const Paths& sources);

 private:
  void process(const std::filesystem::path& source, const std::optional<std::string>& name, std::size_t worker);
  [[nodiscard]] BatchFileOutcome repaired(const std::filesystem::path& source, const std::string& name,
                                          RepairWorkspace& workspace) const;

  const BatchOrder& order_;
  const BatchProcessor::RepairFunction& repair_;
  const CancelFlag& cancelled_;
  BatchState& state_;
  std::vector<RepairWorkspace> workspaces_;  ///< one a worker, kept from file to file
};

// Names are handed out here, on one thread and in order, so that they do not depend on which worker is faster.
void FileLoop::run(const Paths& sources) {
  const std::size_t workers = std::min(clampedWorkers(order_.workers), sources.size());
  workspaces_ = std::vector<RepairWorkspace>(workers);
  OutputNameAllocator names(namesIn(order_.outputFolder));
  WorkQueue queue("Tessaly DNG Batch", workers);
  for (const std::filesystem::path& source : sources) {
    if (cancelled_.isSet()) break;
    std::optional<std::string> name = names.allocate(source.filename(), order_.options.existingOutputPolicy);
    queue.submit([this, &source, name = std::move(name)](std::size_t worker) { process(source, name, worker); });
  }
  queue.wait();
}

void FileLoop::process(const std::filesystem::path& source, const std::optional<std::string>& name,
                       std::size_t worker) {
  if (cancelled_.isSet()) return;
  const BatchFileOutcome outcome = name ? repaired(source, *name, workspaces_[worker]) : skippedOutcome(source);
  const BatchProgress progress = state_.record(outcome);
  callContained(order_.file, outcome);
  callContained(order_.progress, progress);
}

BatchFileOutcome FileLoop::repaired(const std::filesystem::path& source, const std::string& name,
                                    RepairWorkspace& workspace) const {
  try {
    BatchFileOutcome outcome;
    outcome.source = source;
    outcome.repairedSamples =
        repair_(source, order_.outputFolder / name, order_.profile, workspace).report.changedSamples;
    return outcome;
  } catch (const std::exception& error) {
    return failedOutcome(source, error);
  } catch (...) {
    return failedOutcome(source, std::runtime_error("Unknown error"));
  }
}

bool writesWhereItReads(const BatchSources& sources, const std::filesystem::path& outputFolder) {
  return std::ranges::any_of(sources.folders, [&](const auto& folder) { return isSameFolder(folder, outputFolder); });
}

void writeLog(const BatchOrder& order, const BatchState& state, BatchSummary& summary) {
  try {
    summary.logURL = RepairLog::write(state.rows(), order.outputFolder, currentTimestamp());
  } catch (const std::exception& error) {
    summary.logError = exceptionMessage(error);
  }
}

BatchSummary runOrThrow(const BatchSources& sources, const BatchOrder& order,
                        const BatchProcessor::RepairFunction& repair, const CancelFlag& cancelled) {
  if (writesWhereItReads(sources, order.outputFolder)) return failureOfBatch(sameFolders);
  const Paths files = sources.list();
  if (files.empty()) return failureOfBatch(noSources);
  std::filesystem::create_directories(order.outputFolder);

  BatchState state(files.size());
  FileLoop(order, repair, cancelled, state).run(files);
  BatchSummary summary;
  state.report(summary);
  if (order.options.saveLog) writeLog(order, state, summary);
  summary.cancelled = cancelled.isSet();
  return summary;
}

// When not one of the files exists there is nothing to do and no folder to make.
void requireOneToExist(const Paths& files) {
  std::error_code error;
  for (const std::filesystem::path& file : files) {
    if (std::filesystem::exists(file, error)) return;
  }
  if (files.empty()) return;
  throw std::system_error(error ? error : std::make_error_code(std::errc::no_such_file_or_directory));
}

}  // namespace

BatchSources sourcesInFolder(const std::filesystem::path& folder) {
  return {{folder}, [folder] { return sourceFiles(standardized(folder)); }};
}

BatchSources listedSources(std::vector<std::filesystem::path> files) {
  BatchSources sources;
  for (std::filesystem::path& file : files) {
    file = standardized(file);
    sources.folders.push_back(file.parent_path());
  }
  sources.list = [files = std::move(files)] {
    requireOneToExist(files);
    return files;
  };
  return sources;
}

BatchSummary failureOfBatch(std::string message) {
  BatchSummary summary;
  summary.failed = 1;
  summary.failures.push_back({"", std::move(message)});
  return summary;
}

BatchSummary runBatch(const BatchSources& sources, BatchOrder order, const BatchProcessor::RepairFunction& repair,
                      const CancelFlag& cancelled) {
  try {
    order.outputFolder = standardized(order.outputFolder);
    return runOrThrow(sources, order, repair, cancelled);
  } catch (const std::exception& error) {
    return failureOfBatch(exceptionMessage(error));
  }
}

}  // namespace tessaly
