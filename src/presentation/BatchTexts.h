// The texts of a batch: its lines while it runs and what it says when it has ended, shared by window and command line.
//
// Pure apart from reading the interface's language; safe from any thread.
#pragma once

#include "batch/BatchRecords.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace tessaly::BatchTexts {

/// The status while a batch runs.
[[nodiscard]] std::string progressLine(const BatchProgress& progress);

/// The status when it has ended.
[[nodiscard]] std::string statusLine(const BatchSummary& summary);

/// The alert when it has ended, with the first failures and the log.
[[nodiscard]] std::string alertText(const BatchSummary& summary);

/// Whether that alert is a warning rather than a piece of information.
[[nodiscard]] bool isWarning(const BatchSummary& summary);

/// Whether there is something to look at: a file was repaired or skipped, and the output folder exists.
[[nodiscard]] bool canOpenResults(const BatchSummary& summary, const std::filesystem::path& outputFolder);

/// The message of a failure as it is shown: that of a whole batch is kept in English.
[[nodiscard]] std::string message(const BatchFailure& failure);

/// How many candidate files a chosen folder holds.
[[nodiscard]] std::string foundFiles(std::int64_t count);

/// Where copies go when no folder was chosen; an empty `inputFolder` means that none is known yet.
[[nodiscard]] std::string defaultOutput(const std::filesystem::path& inputFolder);

/// When the results cannot be shown.
[[nodiscard]] std::string cannotOpen(const std::filesystem::path& outputFolder);

}  // namespace tessaly::BatchTexts
