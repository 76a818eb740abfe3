#include "cli/BatchReport.h"

#include "cli/BatchResultJSON.h"
#include "cli/Console.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "presentation/BatchTexts.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <utility>

namespace tessaly::cli {
namespace {

using Status = BatchFileOutcome::Status;

/// Which file stands where: the copy of the source, or what keeps it from being made.
std::string placeLine(const BatchFileOutcome& outcome) {
  const std::string source = displayText(outcome.source.native());
  const std::string output = displayText(outcome.output.native());
  if (outcome.status == Status::skipped) return "  " + source + " = " + output;
  return "  " + source + " → " + output + "  " + std::to_string(outcome.repairedSamples);
}

}  // namespace

BatchReport::BatchReport(std::int64_t total, ReportStyle style) : style_(style) {
  progress_.total = total;
  if (showsProgress()) display_.show(0, total, L("Preparing…"));
}

BatchReport::~BatchReport() = default;

bool BatchReport::showsProgress() const {
  return style_.loudness != Loudness::quiet && !style_.isRehearsal;
}

void BatchReport::finished(const BatchFileOutcome& outcome) {
  const std::lock_guard guard(lock_);
  progress_.count(outcome);
  progress_.total = std::max(progress_.total, progress_.completed);
  progress_.currentFilename = displayName(outcome.source);
  tell(outcome);
  try {
    if (!failure_) print(outcome);
  } catch (...) {
    failure_ = std::current_exception();
  }
}

void BatchReport::tell(const BatchFileOutcome& outcome) {
  const bool failed = outcome.status == Status::failed;
  if (failed && !style_.isRehearsal) display_.print({outcome.message, "Cause: " + outcome.technical});
  for (const BatchOmission& each : outcome.lacking)
    display_.print({each.filename + ": " + L(each.cause), "Cause: " + each.cause});
  if (!showsProgress()) return;
  if (!failed && !display_.isTerminal()) display_.print({BatchTexts::progressLine(progress_)});
  if (!failed && style_.loudness == Loudness::verbose) display_.print({placeLine(outcome)});
  if (!isStopping_) display_.show(progress_.completed, progress_.total, progress_.currentFilename);
}

void BatchReport::print(const BatchFileOutcome& outcome) {
  if (style_.keepsFiles) files_.push_back(toJSON(outcome, style_.isRehearsal));
  if (style_.writesLines) Console::write(toJSON(outcome, style_.isRehearsal).dump() + "\n");
  if (style_.isRehearsal && !style_.keepsFiles && !style_.writesLines)
    Console::write(Console::singleLine(BatchTexts::rehearsed(outcome)) + "\n");
}

std::vector<nlohmann::ordered_json> BatchReport::files() const {
  if (failure_) std::rethrow_exception(failure_);
  return files_;
}

void BatchReport::end() {
  const std::lock_guard guard(lock_);
  display_.clear();
}

void BatchReport::stopping() {
  const std::lock_guard guard(lock_);
  if (std::exchange(isStopping_, true) || style_.loudness == Loudness::quiet) return;
  const std::string text = L("Stopping after the current file…");
  if (!display_.isTerminal()) display_.print({text});
  display_.show(progress_.completed, progress_.total, text);
}

}  // namespace tessaly::cli
