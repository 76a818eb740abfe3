// The texts of a batch: its lines while it runs and what it says when it has ended, shared by window and command line.
//
// Pure apart from reading the interface's language; safe from any thread.
#pragma once

#include "batch/BatchRecords.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace tessaly::BatchTexts {

/// The summary with every name, path and message as a person may see them (see VisibleText.h), for what is made from it
/// to be shown; nothing is opened by it.
[[nodiscard]] BatchSummary visible(BatchSummary summary);

/// The status while a batch runs.
[[nodiscard]] std::string progressLine(const BatchProgress& progress);

/// The status when it has ended; says what the destination refused and names files that the counts do not tell of.
[[nodiscard]] std::string statusLine(const BatchSummary& summary);

/// The alert when it has ended, with the first failures, the files that the counts do not tell of, and the log.
[[nodiscard]] std::string alertText(const BatchSummary& summary);

/// Whether that alert is a warning rather than a piece of information.
[[nodiscard]] bool isWarning(const BatchSummary& summary);

/// Whether there is something to look at: a file was repaired or skipped, and the output folder exists.
[[nodiscard]] bool canOpenResults(const BatchSummary& summary, const std::filesystem::path& outputFolder);

/// The message of a failure as it is shown: that of a whole batch is kept in English.
[[nodiscard]] std::string message(const BatchFailure& failure);

/// The same with the name of the folder or file that the system's words are about.
[[nodiscard]] std::string description(const BatchFailure& failure);

/// Of an entry that could not be looked at.
[[nodiscard]] std::string unexamined(const BatchOmission& entry);

/// Of a listed file of which nothing is known.
[[nodiscard]] std::string unaccounted(const BatchOmission& file);

/// Of a temporary file that an earlier run has left, and why it stays.
[[nodiscard]] std::string leftFile(const LeftFile& file);

/// What a rehearsal says of one file: that it fits, is skipped, or why it is refused.
[[nodiscard]] std::string rehearsed(const BatchFileOutcome& outcome);

/// How many files of a rehearsal would be repaired, skipped and refused.
[[nodiscard]] std::string rehearsalLine(const BatchSummary& summary);

/// How many files a stopped batch has not come to; empty when there are none.
[[nodiscard]] std::string filesLeft(const BatchSummary& summary);

/// How many workers a batch uses instead of the number that was asked for; empty when it uses that.
[[nodiscard]] std::string usedWorkers(std::int64_t asked);

/// How many candidate files a chosen folder holds.
[[nodiscard]] std::string foundFiles(std::int64_t count);

/// Where copies go when no folder was chosen; an empty `inputFolder` means that none is known yet.
[[nodiscard]] std::string defaultOutput(const std::filesystem::path& inputFolder);

/// When the results cannot be shown.
[[nodiscard]] std::string cannotOpen(const std::filesystem::path& outputFolder);

}  // namespace tessaly::BatchTexts
