#include "batch/FileLoop.h"

#include "batch/CopyCompanions.h"
#include "batch/OutputNameAllocator.h"
#include "dng/DNGError.h"
#include "localization/Localization.h"
#include "platform/DestinationError.h"
#include "platform/FolderNames.h"
#include "platform/Text.h"
#include "platform/WorkQueue.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace tessaly {

namespace {

std::size_t clampedWorkers(std::int64_t workers) {
  return static_cast<std::size_t>(std::clamp<std::int64_t>(workers, 1, BatchProcessor::mostWorkers));
}

/// The names of all entries, hidden ones too; none when the folder cannot be listed.
std::vector<std::string> namesIn(const std::filesystem::path& folder) {
  try {
    return namesInFolder(folder);
  } catch (const std::filesystem::filesystem_error&) {
    return {};
  }
}

/// Hands out the names in each folder that gets copies.
class NamesOfFolders {
 public:
  OutputNameAllocator& in(const std::filesystem::path& folder) {
    const auto known = allocators_.find(folder);
    return known != allocators_.end() ? known->second : allocators_.try_emplace(folder, namesIn(folder)).first->second;
  }

 private:
  std::map<std::filesystem::path, OutputNameAllocator> allocators_;
};

// Links are not followed: a dangling one bears the name too.
bool isTaken(const std::filesystem::path& path) {
  std::error_code ignored;
  return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

bool saysThatTheNameIsTaken(const DNGError& error) {
  return error.destination() != nullptr && error.destination()->code().value() == EEXIST;
}

BatchFileOutcome successOutcome(const std::filesystem::path& source, std::int64_t repairedSamples) {
  BatchFileOutcome outcome;
  outcome.source = source;
  outcome.repairedSamples = repairedSamples;
  return outcome;
}

BatchFileOutcome failedOutcome(const std::filesystem::path& source, const DNGError& error) {
  BatchFileOutcome outcome;
  outcome.source = source;
  outcome.status = BatchFileOutcome::Status::failed;
  outcome.details = errorDescription(error, AppLanguage::english);
  outcome.message = errorDescription(error);
  outcome.technical = error.innermost().what();
  if (const DestinationError* destination = error.destination())
    outcome.obstacle = BatchObstacle{destination->code().value(), destination->folder(), true};
  return outcome;
}

/// The exception as an error of that file.
DNGError errorOf(const std::exception_ptr& failure, const std::filesystem::path& source) {
  try {
    if (failure) std::rethrow_exception(failure);
  } catch (const std::exception& error) {
    return DNGError::contextualize(error, source);
  } catch (...) {
  }
  return DNGError::contextualize(std::runtime_error("Unknown error"), source);
}

}  // namespace

std::vector<BatchOmission> FileLoop::run(const SourceListing& sources) {
  listing_ = &sources;
  sources_ = &sources.files;
  attempts_ = std::vector<Attempt>(sources_->size());
  workspaces_ = std::vector<RepairWorkspace>(std::min(clampedWorkers(order_.workers), sources_->size()));
  if (workspaces_.size() == 1) workspaces_.front().verification = Verification::behindTheWriter;
  if (!sources_->empty()) submitAll();
  return makeUpForWhatIsOwed();
}

std::filesystem::path FileLoop::folderOfCopy(std::size_t number) const {
  const std::filesystem::path subfolder = listing_->subfolderOf(number);
  return subfolder.empty() ? order_.outputFolder : order_.outputFolder / subfolder;
}

// Names are handed out here, on one thread and in order, so that they do not depend on which worker is faster.
void FileLoop::submitAll() {
  NamesOfFolders names;
  WorkQueue queue("Tessaly DNG Batch", workspaces_.size());
  for (std::size_t number = 0; number < sources_->size() && !cancelled_.isSet(); ++number) {
    try {
      std::optional<std::string> name =
          names.in(folderOfCopy(number)).allocate((*sources_)[number].filename(), order_.options.existingOutputPolicy);
      queue.submit([this, number, name = std::move(name)](std::size_t worker) { process(number, name, worker); });
    } catch (...) {
      attempts_[number].failure = std::current_exception();
    }
  }
  queue.wait();
}

void FileLoop::process(std::size_t number, const std::optional<std::string>& name, std::size_t worker) {
  if (cancelled_.isSet()) return;
  attempts_[number].begun = true;
  try {
    finish(number, outcomeOf(number, name, worker));
  } catch (...) {
    attempts_[number].failure = std::current_exception();
  }
}

void FileLoop::finish(std::size_t number, const BatchFileOutcome& outcome) {
  const BatchProgress progress = state_.record(number, outcome);
  callContained(order_.file, outcome);
  callContained(order_.progress, progress);
}

// Somebody else may have made a copy of that name since the folder was listed; then the file need not be read.
BatchFileOutcome FileLoop::outcomeOf(std::size_t number, const std::optional<std::string>& name, std::size_t worker) {
  const std::filesystem::path& source = (*sources_)[number];
  const bool skips = order_.options.existingOutputPolicy == ExistingOutputPolicy::skip;
  if (!name || (skips && isTaken(folderOfCopy(number) / *name))) return skipped(number);
  try {
    return repaired(number, folderOfCopy(number) / *name, worker);
  } catch (...) {
    if (attempts_[number].repairedSamples) throw;  // the copy stands: its outcome is no failure
    const DNGError error = errorOf(std::current_exception(), source);
    return skips && saysThatTheNameIsTaken(error) ? skipped(number) : failedOutcome(source, error);
  }
}

BatchFileOutcome FileLoop::repaired(std::size_t number, const std::filesystem::path& destination, std::size_t worker) {
  const std::filesystem::path& source = (*sources_)[number];
  const DNGWriteResult result = repair_(source, destination, order_.profile, workspaces_[worker]);
  attempts_[number].repairedSamples = result.report.changedSamples;
  BatchFileOutcome outcome = successOutcome(source, result.report.changedSamples);
  outcome.output = destination;
  if (!order_.options.onlyRehearses) outcome.lacking = addCompanions(source, destination, order_.options);
  return outcome;
}

// The file that stands there may be spelled in other letter case; then it is not known by this name.
BatchFileOutcome FileLoop::skipped(std::size_t number) const {
  BatchFileOutcome outcome;
  outcome.source = (*sources_)[number];
  outcome.status = BatchFileOutcome::Status::skipped;
  outcome.details = "Output file already exists";
  const std::filesystem::path standing = folderOfCopy(number) / outcome.source.filename();
  if (isTaken(standing)) outcome.output = standing;
  return outcome;
}

bool FileLoop::isOwed(std::size_t number) const {
  const bool wasDropped = cancelled_.isSet() && !attempts_[number].begun;
  return !wasDropped && !state_.knows(number);
}

// Memory that was short while all workers were busy is there again at the end.
std::vector<BatchOmission> FileLoop::makeUpForWhatIsOwed() {
  std::vector<BatchOmission> omitted;
  for (std::size_t number = 0; number < sources_->size(); ++number) {
    if (!isOwed(number)) continue;
    const std::filesystem::path& source = (*sources_)[number];
    const Attempt& attempt = attempts_[number];
    try {
      finish(number, attempt.repairedSamples ? successOutcome(source, *attempt.repairedSamples)
                                             : failedOutcome(source, errorOf(attempt.failure, source)));
    } catch (const std::exception& error) {
      omitted.push_back({displayName(source), exceptionMessage(error)});
    }
  }
  return omitted;
}

}  // namespace tessaly
