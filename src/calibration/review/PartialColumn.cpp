#include "calibration/review/PartialColumn.h"

namespace tessaly::CandidateSelection {

bool isPartialColumn(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  return candidate.kind == CalibrationCandidate::Kind::line && candidate.yStart > metadata.activeY;
}

}  // namespace tessaly::CandidateSelection
