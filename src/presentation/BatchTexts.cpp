#include "presentation/BatchTexts.h"

#include "batch/OutputFolder.h"
#include "localization/Localization.h"
#include "platform/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>

namespace tessaly::BatchTexts {
namespace {

constexpr std::size_t mostFailuresShown = 5;

std::string cancelledSuffix(const BatchSummary& summary) {
  return summary.cancelled ? " (" + L("Cancelled") + ")" : "";
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

std::string detailsBlock(const BatchSummary& summary) {
  const std::string lines = failureLines(summary);
  return lines.empty() ? "" : "\n\n" + L("Details") + ":\n" + lines;
}

std::string logText(const BatchSummary& summary) {
  return summary.logURL ? displayText(summary.logURL->native()) : L("No log generated");
}

std::string logErrorBlock(const BatchSummary& summary) {
  return summary.logError ? "\n" + LF("Log writing failed: %@", {*summary.logError}) : "";
}

}  // namespace

std::string progressLine(const BatchProgress& progress) {
  return LF("%d/%d  Success %d  Failed %d  Skipped %d  %@",
            {progress.completed, progress.total, progress.succeeded, progress.failed, progress.skipped,
             progress.currentFilename});
}

std::string statusLine(const BatchSummary& summary) {
  return LF("Complete: %d succeeded, %d failed, %d skipped", {summary.succeeded, summary.failed, summary.skipped}) +
         cancelledSuffix(summary);
}

std::string alertText(const BatchSummary& summary) {
  return fmt::format("{}{}\n\n{}: {}\n{}: {}\n{}: {}{}\n\n{}: {}{}", L("Processing complete"), cancelledSuffix(summary),
                     L("Success"), summary.succeeded, L("Failed"), summary.failed, L("Skipped"), summary.skipped,
                     detailsBlock(summary), L("Log"), logText(summary), logErrorBlock(summary));
}

bool isWarning(const BatchSummary& summary) {
  return summary.failed != 0 || summary.logError;
}

bool canOpenResults(const BatchSummary& summary, const std::filesystem::path& outputFolder) {
  std::error_code error;
  return (summary.succeeded > 0 || summary.skipped > 0) && std::filesystem::is_directory(outputFolder, error);
}

std::string message(const BatchFailure& failure) {
  return failure.filename.empty() ? L(failure.message) : failure.message;
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
