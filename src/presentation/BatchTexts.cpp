#include "presentation/BatchTexts.h"

#include "batch/BatchProcessor.h"
#include "batch/OutputFolder.h"
#include "localization/DestinationMessages.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "platform/VisibleText.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <system_error>
#include <vector>

namespace tessaly::BatchTexts {
namespace {

constexpr std::size_t mostFailuresShown = 5;
constexpr std::size_t mostNamesShown = 5;

std::string cancelledSuffix(const BatchSummary& summary) {
  return summary.cancelled ? " (" + L("Cancelled") + ")" : "";
}

bool hasDestinationSentence(const BatchFailure& failure) {
  return failure.obstacle && failure.obstacle->isDestination &&
         Localization::hasDestinationMessage(failure.obstacle->errorNumber);
}

std::string destinationSentence(const BatchObstacle& obstacle) {
  return Localization::destinationMessage(DestinationError(obstacle.errorNumber, obstacle.place));
}

std::string_view reasonOf(LeftFile::Reason reason) {
  switch (reason) {
    case LeftFile::Reason::notRegular:
      return "it is no regular file";
    case LeftFile::Reason::otherUser:
      return "it belongs to another user";
    case LeftFile::Reason::recent:
      return "it changed within the last day";
    case LeftFile::Reason::inUse:
      return "another program is using it";
    case LeftFile::Reason::refused:
      break;
  }
  return "the system does not let it be removed";
}

std::string failureLine(const BatchFailure& failure) {
  return failure.filename.empty() ? message(failure) : failure.filename + ": " + message(failure);
}

std::string failureLines(const BatchSummary& summary) {
  std::string lines;
  for (std::size_t i = 0; i < std::min(summary.failures.size(), mostFailuresShown); ++i)
    lines += (i > 0 ? "\n" : "") + failureLine(summary.failures[i]);
  return lines;
}

// Once, however many files it has cost.
std::string destinationSuffix(const BatchSummary& summary) {
  const auto refused = std::ranges::find_if(summary.failures, [](const BatchFailure& failure) {
    return failure.obstacle && failure.obstacle->isDestination;
  });
  return refused == summary.failures.end() ? "" : "  " + destinationSentence(*refused->obstacle);
}

std::string names(const std::vector<BatchOmission>& omissions) {
  std::vector<std::string> shown;
  for (const BatchOmission& omission : omissions) {
    if (shown.size() < mostNamesShown) shown.push_back(omission.filename);
  }
  return fmt::format("{}{}", fmt::join(shown, ", "), omissions.size() > mostNamesShown ? ", …" : "");
}

std::string omissionSuffix(const BatchSummary& summary) {
  std::string suffix;
  if (!summary.unexamined.empty()) suffix += "  " + LF("Left out: %@", {names(summary.unexamined)});
  if (!summary.unaccounted.empty()) suffix += "  " + LF("Unaccounted for: %@", {names(summary.unaccounted)});
  return suffix;
}

std::string detailLines(const BatchSummary& summary) {
  std::vector<std::string> lines;
  if (!summary.failures.empty()) lines.push_back(failureLines(summary));
  for (const BatchOmission& entry : summary.unexamined)
    lines.push_back(unexamined(entry));
  for (const BatchOmission& file : summary.unaccounted)
    lines.push_back(unaccounted(file));
  return fmt::format("{}", fmt::join(lines, "\n"));
}

std::string detailsBlock(const BatchSummary& summary) {
  const std::string lines = detailLines(summary);
  return lines.empty() ? "" : "\n\n" + L("Details") + ":\n" + lines;
}

std::string logText(const BatchSummary& summary) {
  return summary.logURL ? displayText(summary.logURL->native()) : L("No log generated");
}

std::string logErrorBlock(const BatchSummary& summary) {
  return summary.logError ? "\n" + LF("Log writing failed: %@", {L(*summary.logError)}) : "";
}

std::filesystem::path visiblePath(const std::filesystem::path& path) {
  return visibleText(path.native());
}

void makeVisible(BatchFailure& failure) {
  failure.filename = visibleText(failure.filename);
  failure.message = visibleText(failure.message);
  if (failure.obstacle) failure.obstacle->place = visiblePath(failure.obstacle->place);
}

void makeVisible(BatchOmission& omission) {
  omission.filename = visibleText(omission.filename);
}

}  // namespace

BatchSummary visible(BatchSummary summary) {
  for (BatchFailure& failure : summary.failures)
    makeVisible(failure);
  for (BatchOmission& entry : summary.unexamined)
    makeVisible(entry);
  for (BatchOmission& file : summary.unaccounted)
    makeVisible(file);
  for (LeftFile& file : summary.leftFiles)
    file.file = visiblePath(file.file);
  if (summary.logURL) summary.logURL = visiblePath(*summary.logURL);
  return summary;
}

std::string progressLine(const BatchProgress& progress) {
  return LF("%d/%d  Success %d  Failed %d  Skipped %d  %@",
            {progress.completed, progress.total, progress.succeeded, progress.failed, progress.skipped,
             progress.currentFilename});
}

std::string statusLine(const BatchSummary& summary) {
  return LF("Complete: %d succeeded, %d failed, %d skipped", {summary.succeeded, summary.failed, summary.skipped}) +
         cancelledSuffix(summary) + destinationSuffix(summary) + omissionSuffix(summary);
}

std::string alertText(const BatchSummary& summary) {
  return fmt::format("{}{}\n\n{}: {}\n{}: {}\n{}: {}{}\n\n{}: {}{}", L("Processing complete"), cancelledSuffix(summary),
                     L("Success"), summary.succeeded, L("Failed"), summary.failed, L("Skipped"), summary.skipped,
                     detailsBlock(summary), L("Log"), logText(summary), logErrorBlock(summary));
}

bool isWarning(const BatchSummary& summary) {
  return summary.failed != 0 || summary.logError || !summary.unexamined.empty() || !summary.unaccounted.empty();
}

bool canOpenResults(const BatchSummary& summary, const std::filesystem::path& outputFolder) {
  std::error_code error;
  return (summary.succeeded > 0 || summary.skipped > 0) && std::filesystem::is_directory(outputFolder, error);
}

std::string message(const BatchFailure& failure) {
  if (!failure.filename.empty()) return failure.message;
  return hasDestinationSentence(failure) ? destinationSentence(*failure.obstacle) : L(failure.message);
}

std::string description(const BatchFailure& failure) {
  const bool isSentence = !failure.filename.empty() || !failure.obstacle || hasDestinationSentence(failure);
  if (isSentence) return message(failure);
  const std::string place = displayName(failure.obstacle->place);
  return (place.empty() ? "\"\"" : place) + ": " + message(failure);
}

std::string unexamined(const BatchOmission& entry) {
  return LF("Tessaly couldn't look at “%@” and left it out: %@", {entry.filename, L(entry.cause)});
}

std::string unaccounted(const BatchOmission& file) {
  return LF("Tessaly can't tell what became of “%@”. Look for its copy in the output folder.", {file.filename});
}

std::string leftFile(const LeftFile& file) {
  return LF("Unfinished copy left in place: %@ (%@)", {displayText(file.file.native()), L(reasonOf(file.reason))});
}

std::string rehearsed(const BatchFileOutcome& outcome) {
  switch (outcome.status) {
    case BatchFileOutcome::Status::success:
      return LF("Fits: %@", {displayText(outcome.source.native())});
    case BatchFileOutcome::Status::skipped:
      return LF("Skipped: %@", {displayText(outcome.source.native())});
    case BatchFileOutcome::Status::failed:
      break;
  }
  return LF("Refused: %@", {outcome.message});
}

std::string rehearsalLine(const BatchSummary& summary) {
  return LF("Nothing was written: %d fit, %d skipped, %d refused",
            {summary.succeeded, summary.skipped, summary.failed});
}

std::string filesLeft(const BatchSummary& summary) {
  const std::int64_t left = summary.total - summary.succeeded - summary.failed - summary.skipped;
  if (!summary.cancelled || left <= 0) return "";
  return left == 1 ? L("One file is left.") : LF("%d files are left.", {left});
}

// 0 leaves the number to the program.
std::string usedWorkers(std::int64_t asked) {
  if (asked < 0) return LF("One worker is used instead of %d.", {asked});
  constexpr std::int64_t most = BatchProcessor::mostWorkers;
  return asked > most ? LF("%d workers are used instead of %d.", {most, asked}) : "";
}

std::string foundFiles(std::int64_t count) {
  return count > 0 ? LF("Found %d DNG files in the input folder.", {count})
                   : L("No DNG files found. Select the folder that directly contains the source DNG files.");
}

std::string defaultOutput(const std::filesystem::path& inputFolder) {
  if (inputFolder.empty()) return L("Created inside the input folder if not selected");
  return LF("Default: %@", {displayText(defaultOutputFolder(inputFolder).native())});
}

std::string cannotOpen(const std::filesystem::path& outputFolder) {
  return L("Unable to open the output folder:\n") + displayText(outputFolder.native());
}

}  // namespace tessaly::BatchTexts
