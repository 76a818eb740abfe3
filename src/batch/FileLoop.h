// The part of a run in which files are repaired, several at once. Private to this folder.
#pragma once

#include "batch/BatchRun.h"
#include "batch/BatchState.h"

#include <cstdint>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

/// Used once, on one thread. `order`, `repair`, `cancelled` and `state` outlive it.
class FileLoop {
 public:
  FileLoop(const BatchOrder& order, const BatchProcessor::RepairFunction& repair, const CancelFlag& cancelled,
           BatchState& state)
      : order_(order), repair_(repair), cancelled_(cancelled), state_(state) {}

  /// Returns when every source that was begun has its outcome in the state, as far as there is memory for it. Gives
  /// the sources without one, unless they were dropped because the run was stopped.
  [[nodiscard]] std::vector<BatchOmission> run(const SourceListing& sources);

 private:
  /// How far one source has come, kept where writing it down needs no memory.
  struct Attempt {
    bool begun = false;
    std::optional<std::int64_t> repairedSamples;  ///< set: its copy stands
    std::exception_ptr failure;                   ///< why it has no outcome yet
  };

  void submitAll();
  void process(std::size_t number, const std::optional<std::string>& name, std::size_t worker);
  void finish(std::size_t number, const BatchFileOutcome& outcome);
  [[nodiscard]] BatchFileOutcome outcomeOf(std::size_t number, const std::optional<std::string>& name,
                                           std::size_t worker);
  [[nodiscard]] std::filesystem::path folderOfCopy(std::size_t number) const;
  [[nodiscard]] BatchFileOutcome skipped(std::size_t number) const;
  [[nodiscard]] BatchFileOutcome repaired(std::size_t number, const std::filesystem::path& destination,
                                          std::size_t worker);
  [[nodiscard]] bool isOwed(std::size_t number) const;
  [[nodiscard]] std::vector<BatchOmission> makeUpForWhatIsOwed();

  const BatchOrder& order_;
  const BatchProcessor::RepairFunction& repair_;
  const CancelFlag& cancelled_;
  BatchState& state_;
  const SourceListing* listing_ = nullptr;
  const std::vector<std::filesystem::path>* sources_ = nullptr;  ///< its files
  std::vector<Attempt> attempts_;                                ///< one a source
  std::vector<RepairWorkspace> workspaces_;                      ///< one a worker, kept from file to file
};

}  // namespace tessaly
