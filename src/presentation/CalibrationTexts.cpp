#include "presentation/CalibrationTexts.h"

#include "calibration/CandidateSelection.h"
#include "localization/Localization.h"
#include "platform/Text.h"

#include <algorithm>
#include <cmath>

namespace tessaly::CalibrationTexts {
namespace {

using Kind = CalibrationCandidate::Kind;

// Below these numbers columns are not classified, or only with care.
constexpr std::int64_t enoughLineFrames = 6;
constexpr std::int64_t enoughLineGroups = 2;

std::int64_t count(std::size_t size) {
  return static_cast<std::int64_t>(size);
}

std::string lineRemark(const CalibrationResult& result) {
  if (result.lineEvidenceFrameCount < enoughLineFrames)
    return L("; fewer than six valid bright-field frames, so columns were not classified automatically");
  if (result.lineExposureGroupCount < enoughLineGroups)
    return L("; column evidence comes from one exposure setting only—review carefully");
  return "";
}

std::string columnClickedMarker(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  const std::string filled = L("Column X coordinate filled. Confirm it, then click Add Full Column.");
  if (!CandidateSelection::isPartialColumn(candidate, metadata)) return filled;
  // Chinese sets no blank between sentences.
  const char* const gap = Localization::language() == AppLanguage::chinese ? "" : " ";
  return filled + gap +
         LF("This partial defective column starts at y=%d. Including it preserves the detected range; the manual "
            "button adds a full column.",
            {candidate.yStart - metadata.activeY});
}

}  // namespace

std::string progress(const CalibrationProgress& progress) {
  return Localization::composedText(progress.message);
}

std::string completion(const CalibrationResult& result, std::int64_t preselectedSpots) {
  std::string text = LF("Complete: %d bright-field, %d dark, %d candidates",
                        {result.brightFrameCount, result.darkFrameCount, count(result.candidates.size())});
  if (preselectedSpots >= 1) text += LF("; %d strong fixed spots preselected", {preselectedSpots});
  return text + lineRemark(result) + L(". Review at high zoom before saving.");
}

std::string completion(const CalibrationResult& result, double pixelConfidence) {
  const auto isPreselectedSpot = [pixelConfidence](const CalibrationCandidate& candidate) {
    return candidate.kind == Kind::spot && CandidateSelection::isPreselected(candidate, pixelConfidence);
  };
  return completion(result, std::int64_t{std::ranges::count_if(result.candidates, isPreselectedSpot)});
}

std::string matchingPixels(double pixelConfidence) {
  return LF("Included pixels with confidence ≥ %d%%. Columns and fixed spots still require manual review.",
            {std::int64_t{std::llround(pixelConfidence * 100)}});
}

std::string markerClicked(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  if (candidate.kind == Kind::line) return columnClickedMarker(candidate, metadata);
  return L(candidate.kind == Kind::spot ? "Spot coordinates and radius filled. Confirm them, then click Add Fixed Spot."
                                        : "Pixel coordinates filled. Confirm them, then click Add Pixel.");
}

std::string columnClicked(std::int64_t activeX) {
  return LF("Active-area coordinate x=%d. If the cyan guide matches the defect, click Add Full Column.", {activeX});
}

std::string inspecting(const std::filesystem::path& photograph) {
  return displayName(photograph) + L(". Zoom in, click the vertical defect, then click Add Full Column.");
}

std::string saved(const CameraProfile& profile, const std::filesystem::path& file) {
  // The sentence that the table translates is older; English alone has an "and" before its last part.
  constexpr const char* english = "Saved “%@”: %d pixels, %d columns, and %d fixed spots.\n\n%@";
  constexpr const char* key = "Saved “%@”: %d pixels, %d columns, %d fixed spots.\n\n%@";
  const std::size_t spots = profile.spots ? profile.spots->size() : 0;
  return Localization::format(Localization::language() == AppLanguage::english ? english : L(key),
                              {profile.name, count(profile.pixels.size()), count(profile.lines.size()), count(spots),
                               displayText(file.native())});
}

std::string reason(const CalibrationCandidate& candidate) {
  return Localization::composedText(candidate.reason);
}

std::string kind(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  if (candidate.kind == Kind::pixel) return L("Pixel");
  if (candidate.kind == Kind::spot) return L("Fixed Spot");
  return L(CandidateSelection::isPartialColumn(candidate, metadata) ? "Partial Column" : "Column");
}

std::string includedCount(std::int64_t included, std::int64_t total) {
  return LF("%d of %d included", {included, total});
}

}  // namespace tessaly::CalibrationTexts
