#include "cli/CalibrationJSON.h"

#include "dng/DNGMetadataJSON.h"

#include <nlohmann/json.hpp>

namespace tessaly::cli {
namespace {

using JSON = nlohmann::ordered_json;

const char* kindText(CalibrationCandidate::Kind kind) {
  if (kind == CalibrationCandidate::Kind::pixel) return "pixel";
  return kind == CalibrationCandidate::Kind::line ? "line" : "spot";
}

template <typename Value>
void addIfPresent(JSON& object, const char* key, const std::optional<Value>& value) {
  if (value) object[key] = *value;
}

JSON toJSON(const CalibrationCandidate& candidate) {
  JSON object = {
      {"id", candidate.id.text()},    {"kind", kindText(candidate.kind)}, {"x", candidate.x},
      {"yStart", candidate.yStart},   {"yEnd", candidate.yEnd},           {"width", candidate.width},
      {"radiusX", candidate.radiusX}, {"radiusY", candidate.radiusY},     {"confidence", candidate.confidence}};
  addIfPresent(object, "evidenceSigma", candidate.evidenceSigma);
  addIfPresent(object, "frameAgreement", candidate.frameAgreement);
  addIfPresent(object, "exposureGroupCount", candidate.exposureGroupCount);
  object["reason"] = candidate.reason;
  return object;
}

}  // namespace

JSON toJSON(const CalibrationResult& result, const std::set<UUID>& included) {
  JSON candidates = JSON::array();
  JSON inclusion = JSON::array();
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
