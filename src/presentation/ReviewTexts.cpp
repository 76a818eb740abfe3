#include "presentation/ReviewTexts.h"

#include "calibration/review/PartialColumn.h"
#include "localization/Localization.h"

#include <cmath>

namespace tessaly::ReviewTexts {
namespace {

std::string lineClicked(const CalibrationCandidate& line, const DNGMetadata& metadata) {
  std::string filled = L("Column X coordinate filled. Confirm it, then click Add Full Column.");
  if (!CandidateSelection::isPartialColumn(line, metadata)) return filled;
  filled += spoken(Localization::language()).sentenceGap;
  return filled +
         LF("This partial defective column starts at y=%d. Including it preserves the detected range; the manual "
            "button adds a full column.",
            {line.yStart - metadata.activeY});
}

}  // namespace

std::string matchingPixelsIncluded(double pixelConfidence) {
  return LF("Included pixels with confidence ≥ %d%%. Columns and fixed spots still require manual review.",
            {static_cast<std::int64_t>(std::llround(pixelConfidence * 100))});
}

std::string candidateClicked(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  switch (candidate.kind) {
    case CandidateKind::line:
      return lineClicked(candidate, metadata);
    case CandidateKind::spot:
      return L("Spot coordinates and radius filled. Confirm them, then click Add Fixed Spot.");
    case CandidateKind::pixel:
      break;
  }
  return L("Pixel coordinates filled. Confirm them, then click Add Pixel.");
}

std::string columnClicked(std::int64_t x) {
  return LF("Active-area coordinate x=%d. If the cyan guide matches the defect, click Add Full Column.", {x});
}

std::string inspecting(const std::string& fileName) {
  return fileName + L(". Zoom in, click the vertical defect, then click Add Full Column.");
}

}  // namespace tessaly::ReviewTexts
