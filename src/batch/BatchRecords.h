// What a batch is asked to do and what it reports.
#pragma once

#include "batch/SourceSelection.h"
#include "platform/AbandonedFiles.h"
#include "preferences/AppPreferences.h"
#include "profile/CameraProfile.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

struct BatchOptions {
  ExistingOutputPolicy existingOutputPolicy = ExistingOutputPolicy::skip;
  bool saveLog = true;
  bool keepDates = false;      ///< a copy gets the modification time of its original
  bool copySidecars = false;   ///< what lies beside an original under its name goes along
  bool onlyRehearses = false;  ///< says by the metadata alone what would happen, and writes nothing
};

/// What the system refused, and where.
struct BatchObstacle {
  int errorNumber = 0;
  std::filesystem::path place;  ///< the folder or file
  bool isDestination = false;   ///< the folder for the copies, not what is read

  bool operator==(const BatchObstacle&) const = default;
};

/// Something of the input that the counts do not tell of, and why.
struct BatchOmission {
  std::string filename;  ///< as text
  std::string cause;     ///< English

  bool operator==(const BatchOmission&) const = default;
};

/// The outcome of one file, for the log and for callers that report each file (the command line).
struct BatchFileOutcome {
  enum class Status { success, failed, skipped };

  std::filesystem::path source;
  Status status = Status::success;
  std::int64_t repairedSamples = 0;
  std::string details;                                   ///< as the log says it: always English, empty for a success
  std::string message;                                   ///< of a failure, in the interface's language
  std::string technical;                                 ///< of a failure, the innermost error's English description
  std::optional<BatchObstacle> obstacle = std::nullopt;  ///< of a failure of the destination
  std::filesystem::path output{};        ///< the copy, or of a skipped source the file that bears its name; else empty
  std::vector<BatchOmission> lacking{};  ///< sidecars and dates that the copy, which stands, could not be given
};

/// A snapshot taken when one file has finished.
struct BatchProgress {
  std::int64_t total = 0;
  std::int64_t completed = 0;
  std::int64_t succeeded = 0;
  std::int64_t failed = 0;
  std::int64_t skipped = 0;
  std::string currentFilename;  ///< the file that has just finished, as text

  /// Counts one more finished file; its name is the caller's to set.
  void count(const BatchFileOutcome& outcome);

  bool operator==(const BatchProgress&) const = default;
};

using BatchProgressHandler = std::function<void(const BatchProgress&)>;
using BatchFileHandler = std::function<void(const BatchFileOutcome&)>;

/// What is done with the source files of one run.
struct BatchOrder {
  std::filesystem::path outputFolder{};
  CameraProfile profile{};
  std::int64_t workers = 1;  ///< clamped to 1…4
  BatchOptions options{};
  BatchProgressHandler progress{};
  BatchFileHandler file{};                    ///< called before `progress`
  std::optional<Shard> shard = std::nullopt;  ///< only this part of the sources
};

struct BatchFailure {
  std::string filename;  ///< as text; empty for a failure of the batch as a whole
  std::string message;   ///< in the interface's language; of the batch as a whole: English
  std::optional<BatchObstacle> obstacle = std::nullopt;  ///< of the batch as a whole, and of the destination

  bool operator==(const BatchFailure&) const = default;
};

struct BatchSummary {
  std::int64_t total = 0;
  std::int64_t succeeded = 0;
  std::int64_t failed = 0;
  std::int64_t skipped = 0;
  bool cancelled = false;
  std::vector<BatchFailure> failures;  ///< in finishing order
  std::optional<std::filesystem::path> logURL;
  std::optional<std::string> logError;
  std::vector<BatchOmission> unexamined;   ///< entries that could not be looked at; not among the total
  std::vector<BatchOmission> unaccounted;  ///< listed files without an outcome, of a run that was not stopped
  std::vector<LeftFile> leftFiles;         ///< temporary files that earlier runs left and that stay

  bool operator==(const BatchSummary&) const = default;
};

}  // namespace tessaly
