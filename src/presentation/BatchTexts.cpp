#include "presentation/BatchTexts.h"

#include "localization/Localization.h"
#include "platform/Text.h"

#include <algorithm>
#include <system_error>

namespace tessaly {

namespace BatchTexts {

namespace {

constexpr std::size_t mostFailuresShown = 5;

std::string cancelledSuffix(const BatchSummary& summary) {
  return summary.cancelled ? " (" + L("Cancelled") + ")" : "";
}

// A failure of the batch as a whole has no file name, and its message is the English text.
std::string failureLine(const BatchFailure& failure) {
  return failure.filename.empty() ? L(failure.message) : failure.filename + ": " + failure.message;
}

std::string failureDetails(const BatchSummary& summary) {
  std::string lines;
  const std::size_t shown = std::min(summary.failures.size(), mostFailuresShown);
  for (std::size_t index = 0; index < shown; ++index) {
    if (index > 0) lines += '\n';
    lines += failureLine(summary.failures[index]);
  }
  return lines.empty() ? lines : "\n\n" + L("Details") + ":\n" + lines;
}

std::string logText(const BatchSummary& summary) {
  return summary.logURL ? displayText(summary.logURL->native()) : L("No log generated");
}

std::string logErrorText(const BatchSummary& summary) {
  return summary.logError ? "\n" + LF("Log writing failed: %@", {*summary.logError}) : "";
}

std::string countLine(std::string_view caption, std::int64_t count) {
  return "\n" + L(caption) + ": " + std::to_string(count);
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
  return L("Processing complete") + cancelledSuffix(summary) + "\n" + countLine("Success", summary.succeeded) +
         countLine("Failed", summary.failed) + countLine("Skipped", summary.skipped) + failureDetails(summary) +
         "\n\n" + L("Log") + ": " + logText(summary) + logErrorText(summary);
}

bool isWarning(const BatchSummary& summary) {
  return summary.failed != 0 || summary.logError.has_value();
}

bool canOpenResults(const BatchSummary& summary, const std::filesystem::path& outputFolder) {
  std::error_code error;
  return (summary.succeeded > 0 || summary.skipped > 0) && std::filesystem::is_directory(outputFolder, error);
}

}  // namespace BatchTexts

bool BatchProgressDisplay::show(const BatchProgress& progress) {
  if (latest_ && progress.completed <= latest_->completed) return false;
  latest_ = progress;
  return true;
}

std::string BatchProgressDisplay::status() const {
  if (stopping_) return L("Stopping after the current file…");
  return latest_ ? BatchTexts::progressLine(*latest_) : L("Preparing…");
}

std::int64_t BatchProgressDisplay::barValue() const {
  return latest_ ? latest_->completed : 0;
}

std::int64_t BatchProgressDisplay::barMaximum() const {
  return std::max<std::int64_t>(latest_ ? latest_->total : 0, 1);
}

}  // namespace tessaly
