#include "presentation/CalibrationTexts.h"

#include "calibration/review/Preselection.h"
#include "localization/Localization.h"
#include "platform/Text.h"

#include <algorithm>

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

std::string saved(const CameraProfile& profile, const std::filesystem::path& file) {
  // The sentence that the table translates is older; English alone has an "and" before its last part.
  constexpr const char* english = "Saved “%@”: %d pixels, %d columns, and %d fixed spots.\n\n%@";
  constexpr const char* key = "Saved “%@”: %d pixels, %d columns, %d fixed spots.\n\n%@";
  const std::size_t spots = profile.spots ? profile.spots->size() : 0;
  const std::initializer_list<Localization::FormatArgument> arguments = {profile.name, count(profile.pixels.size()),
                                                                         count(profile.lines.size()), count(spots),
                                                                         displayText(file.native())};
  return Localization::language() == AppLanguage::english ? Localization::format(english, arguments)
                                                          : LF(key, arguments);
}

std::string camera(const DNGMetadata& metadata) {
  return metadata.cameraSerial ? metadata.model + ", " + *metadata.cameraSerial : metadata.model;
}

std::string includedCount(std::int64_t included, std::int64_t total) {
  return LF("%d of %d included", {included, total});
}

}  // namespace tessaly::CalibrationTexts
