#include "cli/BatchReport.h"

#include "platform/Text.h"
#include "presentation/BatchTexts.h"

#include <algorithm>

namespace tessaly::cli {

void BatchReport::finished(const BatchFileOutcome& outcome) {
  const std::lock_guard guard(lock_);
  count(outcome);
  const std::string line = BatchTexts::progress(progress_);
  if (outcome.status == BatchFileOutcome::Status::failed) {
    display_.print({outcome.message, "Cause: " + outcome.technical});
  } else {
    display_.print({line});
  }
  display_.show(progress_.completed, progress_.total, progress_.currentFilename);
}

void BatchReport::count(const BatchFileOutcome& outcome) {
  ++progress_.completed;
  progress_.total = std::max(progress_.total, progress_.completed);
  progress_.succeeded += outcome.status == BatchFileOutcome::Status::success;
  progress_.failed += outcome.status == BatchFileOutcome::Status::failed;
  progress_.skipped += outcome.status == BatchFileOutcome::Status::skipped;
  progress_.currentFilename = displayName(outcome.source);
}

}  // namespace tessaly::cli
