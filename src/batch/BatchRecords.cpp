#include "batch/BatchRecords.h"

namespace tessaly {

void BatchProgress::count(const BatchFileOutcome& outcome) {
  ++completed;
  switch (outcome.status) {
    case BatchFileOutcome::Status::success:
      ++succeeded;
      break;
    case BatchFileOutcome::Status::failed:
      ++failed;
      break;
    case BatchFileOutcome::Status::skipped:
      ++skipped;
      break;
  }
}

}  // namespace tessaly
