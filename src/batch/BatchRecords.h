// What a batch is asked to do and what it reports.
#pragma once

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
};

/// The outcome of one file, for the log and for callers that report each file (the command line).
struct BatchFileOutcome {
  enum class Status { success, failed, skipped };

  std::filesystem::path source;
  Status status = Status::success;
  std::int64_t repairedSamples = 0;
  std::string details;    ///< as the log says it: always English, empty for a success
  std::string message;    ///< of a failure, in the interface's language
  std::string technical;  ///< of a failure, the innermost error's English description
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
  BatchFileHandler file{};  ///< called before `progress`
};

struct BatchFailure {
  std::string filename;  ///< as text; empty for a failure of the batch as a whole
  std::string message;   ///< in the interface's language; of the batch as a whole: English

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

  bool operator==(const BatchSummary&) const = default;
};

}  // namespace tessaly
