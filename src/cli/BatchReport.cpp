#include "cli/BatchReport.h"

#include "localization/Localization.h"
#include "platform/Text.h"
#include "presentation/BatchTexts.h"

#include <algorithm>
#include <string>
#include <utility>

namespace tessaly::cli {

BatchReport::BatchReport(std::int64_t total) {
  progress_.total = total;
  display_.show(0, total, L("Preparing…"));
}

void BatchReport::finished(const BatchFileOutcome& outcome) {
  const std::lock_guard guard(lock_);
  progress_.count(outcome);
  progress_.total = std::max(progress_.total, progress_.completed);
  progress_.currentFilename = displayName(outcome.source);
  if (outcome.status == BatchFileOutcome::Status::failed) {
    display_.print({outcome.message, "Cause: " + outcome.technical});
  } else if (!display_.isTerminal()) {
    display_.print({BatchTexts::progressLine(progress_)});
  }
  if (!isStopping_) display_.show(progress_.completed, progress_.total, progress_.currentFilename);
}

void BatchReport::stopping() {
  const std::lock_guard guard(lock_);
  if (std::exchange(isStopping_, true)) return;
  const std::string text = L("Stopping after the current file…");
  if (!display_.isTerminal()) display_.print({text});
  display_.show(progress_.completed, progress_.total, text);
}

}  // namespace tessaly::cli
