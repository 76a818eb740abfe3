#include "calibration/CalibrationJSON.h"

#include "platform/JSONNumbers.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>
#include <string_view>

namespace tessaly {
namespace {

using nlohmann::ordered_json;

constexpr std::array<std::string_view, 6> finderNames{"dim",    "warm", "unsteady",
                                                      "column", "run",  "shadow"};  // likewise

[[noreturn]] void fail(const char* key, const char* problem) {
  throw std::invalid_argument(fmt::format("\"{}\" {}", key, problem));
}

void decode(const char* key, const ordered_json& json, std::int64_t& value) {
  const auto number = wholeNumber(json);
  if (!number) fail(key, "is not a 64-bit whole number");
  value = *number;
}

void decode(const char* key, const ordered_json& json, double& value) {
  const auto number = finiteNumber(json);
  if (!number) fail(key, "is not a finite number");
  value = *number;
}

void decode(const char* key, const ordered_json& json, std::string& value) {
  if (!json.is_string()) fail(key, "is not a text");
  value = json.get<std::string>();
}

void decode(const char* key, const ordered_json& json, UUID& value) {
  std::string text;
  decode(key, json, text);
  const auto id = UUID::parse(text);
  if (!id) fail(key, "is not a UUID");
  value = *id;
}

// "pixel, line and spot"
std::string allKinds() {
  std::string names(candidateKinds.front().name);
  for (std::size_t i = 1; i < candidateKinds.size(); ++i)
    names.append(i + 1 < candidateKinds.size() ? ", " : " and ").append(candidateKinds[i].name);
  return names;
}

void decode(const char* key, const ordered_json& json, CandidateKind& value) {
  for (const NamedCandidateKind& known : candidateKinds) {
    if (json != known.name) continue;
    value = known.kind;
    return;
  }
  fail(key, ("is none of " + allKinds()).c_str());
}

ordered_json encoded(const UUID& id) {
  return id.text();
}

ordered_json encoded(CandidateKind kind) {
  return nameOf(kind);
}

template <typename Value>
ordered_json encoded(const Value& value) {
  return value;
}

/// Collects fields into an object.
struct Encoder {
  ordered_json object = ordered_json::object();

  template <typename Value>
  void operator()(const char* key, const Value& value) {
    object[key] = encoded(value);
  }

  template <typename Value>
  void operator()(const char* key, const std::optional<Value>& value) {
    if (value) object[key] = *value;
  }
};

/// Fills fields from an object.
struct Decoder {
  const ordered_json& object;

  template <typename Value>
  void operator()(const char* key, Value& value) const {
    const auto found = object.find(key);
    if (found == object.end()) fail(key, "is missing");
    decode(key, *found, value);
  }

  template <typename Value>
  void operator()(const char* key, std::optional<Value>& value) const {
    const auto found = object.find(key);
    if (found == object.end() || found->is_null()) return;
    decode(key, *found, value.emplace());
  }
};

// The keys, once, for both directions.
template <typename Candidate, typename Visitor>
void forEachField(Candidate& candidate, Visitor& visit) {
  visit("id", candidate.id);
  visit("kind", candidate.kind);
  visit("x", candidate.x);
  visit("yStart", candidate.yStart);
  visit("yEnd", candidate.yEnd);
  visit("width", candidate.width);
  visit("radiusX", candidate.radiusX);
  visit("radiusY", candidate.radiusY);
  visit("confidence", candidate.confidence);
  visit("evidenceSigma", candidate.evidenceSigma);
  visit("frameAgreement", candidate.frameAgreement);
  visit("exposureGroupCount", candidate.exposureGroupCount);
  visit("reason", candidate.reason);
}

}  // namespace

ordered_json toJSON(const CalibrationCandidate& candidate) {
  Encoder encoder;
  forEachField(candidate, encoder);
  return encoder.object;
}

ordered_json toJSON(const SecondOpinionFinding& finding) {
  ordered_json json = toJSON(finding.candidate);
  json["finder"] = finderNames[static_cast<std::size_t>(finding.finder)];
  return json;
}

CalibrationCandidate candidateFromJSON(const ordered_json& json) {
  if (!json.is_object()) throw std::invalid_argument("A candidate is not an object");
  CalibrationCandidate candidate;
  const Decoder decoder{json};
  forEachField(candidate, decoder);
  return candidate;
}

}  // namespace tessaly
