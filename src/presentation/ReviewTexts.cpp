#include "presentation/ReviewTexts.h"

#include "calibration/review/PartialColumn.h"
#include "localization/Localization.h"
#include "presentation/CandidateTexts.h"

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

/// A format for a kind and a position, with those of the candidate.
std::string naming(const char* english, const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  return LF(english, {CandidateTexts::kind(candidate, metadata), CandidateTexts::position(candidate, metadata)});
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

std::string added(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  return naming("Added: %@ (%@)", candidate, metadata);
}

std::string addedBefore(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  return naming("In the list already, now included: %@ (%@)", candidate, metadata);
}

std::string removed(const std::vector<CalibrationCandidate>& candidates, const DNGMetadata& metadata) {
  if (candidates.empty())
    return L("Only what was added by hand can be removed. Exclude a detected candidate by its check box.");
  if (candidates.size() == 1) return naming("Removed: %@ (%@)", candidates.front(), metadata);
  return LF("Manual additions removed: %d", {static_cast<std::int64_t>(candidates.size())});
}

std::string savedBefore(const std::string& profileName) {
  return LF("This selection is saved already as “%@”.", {profileName});
}

std::string inspecting(const std::string& fileName) {
  return fileName + L(". Zoom in, click the vertical defect, then click Add Full Column.");
}

}  // namespace tessaly::ReviewTexts
