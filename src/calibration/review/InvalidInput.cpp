#include "calibration/review/InvalidInput.h"

namespace tessaly {

const DNGMetadata& CandidateSelection::requireResult(const DNGMetadata* metadata) {
  if (metadata == nullptr) throw InvalidInput("Run defect detection first.");
  return *metadata;
}

}  // namespace tessaly
