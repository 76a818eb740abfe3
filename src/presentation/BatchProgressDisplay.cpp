#include "presentation/BatchProgressDisplay.h"

#include "localization/Localization.h"
#include "platform/VisibleText.h"
#include "presentation/BatchTexts.h"

#include <algorithm>

namespace tessaly {

bool BatchProgressDisplay::show(const BatchProgress& progress) {
  if (latest_ && progress.completed <= latest_->completed) return false;
  latest_ = progress;
  latest_->currentFilename = visibleText(progress.currentFilename);
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
