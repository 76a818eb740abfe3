#include "cli/CalibrationResultJSON.h"

#include "calibration/CalibrationJSON.h"
#include "dng/metadata/DNGMetadataJSON.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <utility>

namespace tessaly::cli {

namespace {

void addSecondOpinion(const SecondOpinion& opinion, nlohmann::ordered_json& json) {
  for (std::size_t i = 0; i < opinion.confirmed.size(); ++i)
    if (opinion.confirmed[i]) json["candidates"][i]["confirmed"] = *opinion.confirmed[i];
  auto findings = nlohmann::ordered_json::array();
  for (const SecondOpinionFinding& finding : opinion.findings)
    findings.push_back(toJSON(finding));
  json["secondOpinion"] = std::move(findings);
}

}  // namespace

nlohmann::ordered_json toJSON(const CalibrationResult& result, const std::set<UUID>& included) {
  auto candidates = nlohmann::ordered_json::array();
  auto inclusion = nlohmann::ordered_json::array();
  for (const CalibrationCandidate& candidate : result.candidates) {
    candidates.push_back(toJSON(candidate));
    inclusion.push_back(included.contains(candidate.id));
  }
  nlohmann::ordered_json json{{"metadata", toJSON(result.metadata)},
                              {"brightFrameCount", result.brightFrameCount},
                              {"darkFrameCount", result.darkFrameCount},
                              {"lineEvidenceFrameCount", result.lineEvidenceFrameCount},
                              {"lineExposureGroupCount", result.lineExposureGroupCount},
                              {"candidates", std::move(candidates)},
                              {"included", std::move(inclusion)},
                              {"preview", {{"width", result.preview.width}, {"height", result.preview.height}}}};
  if (result.secondOpinion) addSecondOpinion(*result.secondOpinion, json);
  return json;
}

}  // namespace tessaly::cli
