#include "batch/BatchRun.h"

#include "batch/BatchState.h"
#include "batch/FileLoop.h"
#include "batch/OutputFolder.h"
#include "batch/RepairLog.h"
#include "platform/AbandonedFiles.h"
#include "platform/DestinationError.h"
#include "platform/Text.h"

#include <algorithm>
#include <optional>
#include <set>
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

bool writesWhereItReads(const BatchSources& sources, const std::filesystem::path& outputFolder) {
  return std::ranges::any_of(sources.folders, [&](const auto& folder) { return isSameFolder(folder, outputFolder); });
}

void writeLog(const BatchOrder& order, const BatchState& state, BatchSummary& summary) {
  try {
    summary.logURL = RepairLog::write(state.rows(), order.outputFolder, currentTimestamp(), order.shard);
  } catch (const std::exception& error) {
    summary.logError = exceptionMessage(error);
  }
}

std::vector<BatchOmission> omissions(const std::vector<UnexaminedEntry>& entries) {
  std::vector<BatchOmission> omitted;
  omitted.reserve(entries.size());
  for (const UnexaminedEntry& entry : entries)
    omitted.push_back({displayName(entry.path), systemMessage(entry.error.value())});
  return omitted;
}

/// The folders that get copies, each once.
std::set<std::filesystem::path> foldersOfCopies(const SourceListing& listing, const BatchOrder& order) {
  std::set<std::filesystem::path> folders{order.outputFolder};
  for (const std::filesystem::path& subfolder : listing.subfolders) {
    if (!subfolder.empty()) folders.insert(order.outputFolder / subfolder);
  }
  return folders;
}

// A subfolder that is not there yet has nothing in it; the first copy makes it.
void prepareFolders(const SourceListing& listing, const BatchOrder& order, BatchSummary& summary) {
  atDestination(order.outputFolder, [&] { std::filesystem::create_directories(order.outputFolder); });
  for (const std::filesystem::path& folder : foldersOfCopies(listing, order)) {
    const std::vector<LeftFile> left = removeAbandonedFiles(folder);
    summary.leftFiles.insert(summary.leftFiles.end(), left.begin(), left.end());
  }
}

BatchSummary repairSources(const SourceListing& sources, const BatchOrder& order,
                           const BatchProcessor::RepairFunction& repair, const CancelFlag& cancelled) {
  BatchSummary summary;
  if (!order.options.onlyRehearses) prepareFolders(sources, order, summary);
  BatchState state(sources.files.size());
  summary.unaccounted = FileLoop(order, repair, cancelled, state).run(sources);
  state.report(summary);
  if (order.options.saveLog && !order.options.onlyRehearses) writeLog(order, state, summary);
  summary.cancelled = cancelled.isSet();
  return summary;
}

DNGWriteResult rehearse(const std::filesystem::path& source, const std::filesystem::path& destination,
                        const CameraProfile& profile, RepairWorkspace&) {
  DNGWriter::requireRepairable(source, profile);
  return {destination, {}, 0};
}

BatchSummary runOrThrow(const BatchSources& sources, const BatchOrder& order,
                        const BatchProcessor::RepairFunction& repair, const CancelFlag& cancelled) {
  if (writesWhereItReads(sources, order.outputFolder)) return failureOfBatch(sameFolders);
  const SourceListing listing = sources.list();
  const SourceListing own = order.shard ? shardOf(listing, *order.shard) : listing;
  const BatchProcessor::RepairFunction& used = order.options.onlyRehearses ? rehearse : repair;
  BatchSummary summary = listing.files.empty() ? failureOfBatch(noSources) : repairSources(own, order, used, cancelled);
  summary.unexamined = omissions(listing.unexamined);
  return summary;
}

// Where the system refused what the whole batch needs; nothing when the failure is of another kind.
std::optional<BatchObstacle> obstacleIn(const std::exception& error) {
  if (const auto* destination = dynamic_cast<const DestinationError*>(&error))
    return BatchObstacle{destination->code().value(), destination->folder(), true};
  if (const auto* listing = dynamic_cast<const std::filesystem::filesystem_error*>(&error))
    return BatchObstacle{listing->code().value(), listing->path1(), false};
  return std::nullopt;
}

// When not one of the files exists there is nothing to do and no folder to make.
void requireOneToExist(const Paths& files) {
  std::error_code error;
  for (const std::filesystem::path& file : files) {
    if (std::filesystem::exists(file, error)) return;
  }
  if (files.empty()) return;
  const auto missing = std::make_error_code(std::errc::no_such_file_or_directory);
  throw std::filesystem::filesystem_error("", files.front(), error ? error : missing);
}

}  // namespace

BatchSources sourcesInFolder(const std::filesystem::path& folder) {
  return {{folder}, [folder] { return listSourceFiles(standardized(folder)); }};
}

BatchSources listedSources(std::vector<std::filesystem::path> files) {
  BatchSources sources;
  for (std::filesystem::path& file : files) {
    file = standardized(file);
    sources.folders.push_back(file.parent_path());
  }
  sources.list = [files = std::move(files)] {
    requireOneToExist(files);
    return SourceListing{files, {}, {}};
  };
  return sources;
}

BatchSources selectedSources(SourceSelection selection) {
  BatchSources sources;
  for (const std::filesystem::path& source : selection.sources) {
    std::error_code error;
    const std::filesystem::path place = standardized(source);
    sources.folders.push_back(std::filesystem::is_directory(place, error) ? place : place.parent_path());
  }
  sources.list = [selection = std::move(selection)] {
    SourceListing listing = listSelection(selection);
    requireOneToExist(listing.files);
    return listing;
  };
  return sources;
}

BatchSummary failureOfBatch(std::string message) {
  BatchSummary summary;
  summary.failed = 1;
  summary.failures.push_back({"", std::move(message), std::nullopt});
  return summary;
}

BatchSummary runBatch(const BatchSources& sources, BatchOrder order, const BatchProcessor::RepairFunction& repair,
                      const CancelFlag& cancelled) {
  try {
    order.outputFolder = standardized(order.outputFolder);
    return runOrThrow(sources, order, repair, cancelled);
  } catch (const std::exception& error) {
    BatchSummary summary = failureOfBatch(exceptionMessage(error));
    summary.failures.front().obstacle = obstacleIn(error);
    return summary;
  }
}

}  // namespace tessaly
