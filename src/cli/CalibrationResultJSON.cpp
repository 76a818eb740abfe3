#include "cli/CalibrationResultJSON.h"

#include "calibration/CalibrationJSON.h"
#include "dng/metadata/DNGMetadataJSON.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace tessaly::cli {

nlohmann::ordered_json toJSON(const CalibrationResult& result, const std::set<UUID>& included) {
  auto candidates = nlohmann::ordered_json::array();
  auto inclusion = nlohmann::ordered_json::array();
  for (const CalibrationCandidate& candidate : result.candidates) {
    candidates.push_back(toJSON(candidate));
    inclusion.push_back(included.contains(candidate.id));
  }
  return {{"metadata", toJSON(result.metadata)},
          {"brightFrameCount", result.brightFrameCount},
          {"darkFrameCount", result.darkFrameCount},
          {"lineEvidenceFrameCount", result.lineEvidenceFrameCount},
          {"lineExposureGroupCount", result.lineExposureGroupCount},
          {"candidates", std::move(candidates)},
          {"included", std::move(inclusion)},
          {"preview", {{"width", result.preview.width}, {"height", result.preview.height}}}};
}

}  // namespace tessaly::cli
