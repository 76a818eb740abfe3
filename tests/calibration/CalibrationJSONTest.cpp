#include "calibration/CalibrationJSON.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {
namespace {

using nlohmann::ordered_json;

const std::string id = "0E8A7C4F-1B2D-4C3E-8F90-A1B2C3D4E5F6";

CalibrationCandidate fullCandidate() {
  CalibrationCandidate candidate;
  candidate.id = UUID::parse(id).value();
  candidate.kind = CalibrationCandidate::Kind::line;
  candidate.x = 1;
  candidate.yStart = 2;
  candidate.yEnd = 3;
  candidate.width = 4;
  candidate.radiusX = 5;
  candidate.radiusY = 6;
  candidate.confidence = 0.75;
  candidate.evidenceSigma = 6.5;
  candidate.frameAgreement = 0.9;
  candidate.exposureGroupCount = 3;
  candidate.reason = "σ";
  return candidate;
}

const std::string fullJSON = R"({"id":")" + id +
                             R"(","kind":"line","x":1,"yStart":2,"yEnd":3,"width":4,"radiusX":5,"radiusY":6,)"
                             R"("confidence":0.75,"evidenceSigma":6.5,"frameAgreement":0.9,"exposureGroupCount":3,)"
                             R"("reason":"σ"})";

// The JSON of the full candidate with one key changed.
ordered_json changed(const char* key, const ordered_json& value) {
  ordered_json json = ordered_json::parse(fullJSON);
  json[key] = value;
  return json;
}

std::string problem(const ordered_json& json) {
  try {
    (void)candidateFromJSON(json);
    return "none";
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
}

TEST(CalibrationJSON, TellsTheFinderBehindTheRecord) {
  using Finder = SecondOpinionFinding::Finder;
  const std::vector<std::pair<Finder, std::string>> names{{Finder::dim, "dim"},           {Finder::warm, "warm"},
                                                          {Finder::unsteady, "unsteady"}, {Finder::column, "column"},
                                                          {Finder::run, "run"},           {Finder::shadow, "shadow"}};
  for (const auto& [finder, name] : names) {
    const std::string expected = fullJSON.substr(0, fullJSON.size() - 1) + R"(,"finder":")" + name + R"("})";
    EXPECT_EQ(toJSON(SecondOpinionFinding{finder, fullCandidate(), 7, 1}).dump(), expected);
  }
}

TEST(CandidateJSON, HasThirteenKeysInTheOrderOfTheFields) {
  EXPECT_EQ(toJSON(fullCandidate()).dump(), fullJSON);
}

TEST(CandidateJSON, LeavesOutWhatIsAbsent) {
  CalibrationCandidate candidate;
  candidate.id = UUID::parse(id).value();
  EXPECT_EQ(toJSON(candidate).dump(),
            R"({"id":")" + id +
                R"(","kind":"pixel","x":0,"yStart":0,"yEnd":0,"width":1,"radiusX":0,"radiusY":0,"confidence":0.0,)"
                R"("reason":""})");
}

TEST(CandidateJSON, NamesTheThreeKinds) {
  for (const auto& [kind, name] : candidateKinds)
    EXPECT_EQ(candidateFromJSON(changed("kind", name)).kind, kind) << name;
  for (const auto& [kind, name] :
       {std::pair{CalibrationCandidate::Kind::pixel, "pixel"}, std::pair{CalibrationCandidate::Kind::line, "line"},
        std::pair{CalibrationCandidate::Kind::spot, "spot"}}) {
    CalibrationCandidate candidate = fullCandidate();
    candidate.kind = kind;
    EXPECT_EQ(toJSON(candidate)["kind"], name);
    EXPECT_EQ(candidateFromJSON(changed("kind", name)).kind, kind);
  }
}

TEST(CandidateJSON, ReadsWhatItWrote) {
  EXPECT_EQ(candidateFromJSON(ordered_json::parse(fullJSON)), fullCandidate());
  CalibrationCandidate plain;
  plain.id = UUID::random();
  EXPECT_EQ(candidateFromJSON(toJSON(plain)), plain);
}

TEST(CandidateJSON, TakesNullForAbsentAndIgnoresUnknownKeys) {
  ordered_json json = changed("evidenceSigma", nullptr);
  json["frameAgreement"] = nullptr;
  json.erase("exposureGroupCount");
  json["colour"] = "red";
  CalibrationCandidate expected = fullCandidate();
  expected.evidenceSigma.reset();
  expected.frameAgreement.reset();
  expected.exposureGroupCount.reset();
  EXPECT_EQ(candidateFromJSON(json), expected);
}

TEST(CandidateJSON, RefusesAnUnknownKind) {
  for (const char* const name : {"column", "Pixel", "", "pixel "})
    EXPECT_EQ(problem(changed("kind", name)), "\"kind\" is none of pixel, line and spot");
  EXPECT_EQ(problem(changed("kind", 0)), "\"kind\" is none of pixel, line and spot");
}

TEST(CandidateJSON, RefusesAMissingKey) {
  for (const char* const key :
       {"id", "kind", "x", "yStart", "yEnd", "width", "radiusX", "radiusY", "confidence", "reason"}) {
    ordered_json json = ordered_json::parse(fullJSON);
    json.erase(key);
    EXPECT_EQ(problem(json), std::string("\"") + key + "\" is missing");
  }
}

TEST(CandidateJSON, TakesWholeNumbersOnlyForWholeNumbers) {
  EXPECT_EQ(candidateFromJSON(changed("x", 4.0)).x, 4);
  EXPECT_EQ(candidateFromJSON(changed("x", -9)).x, -9);
  EXPECT_EQ(problem(changed("x", 4.5)), "\"x\" is not a 64-bit whole number");
  EXPECT_EQ(problem(changed("x", "4")), "\"x\" is not a 64-bit whole number");
  EXPECT_EQ(problem(changed("x", 9223372036854775808U)), "\"x\" is not a 64-bit whole number");
  EXPECT_EQ(problem(changed("x", 1e19)), "\"x\" is not a 64-bit whole number");
  EXPECT_EQ(problem(changed("exposureGroupCount", 1.5)), "\"exposureGroupCount\" is not a 64-bit whole number");
}

TEST(CandidateJSON, RefusesOtherTypes) {
  EXPECT_EQ(problem(changed("confidence", "0.5")), "\"confidence\" is not a finite number");
  EXPECT_EQ(problem(changed("reason", 5)), "\"reason\" is not a text");
  EXPECT_EQ(problem(changed("id", "0E8A7C4F")), "\"id\" is not a UUID");
  EXPECT_EQ(problem(changed("id", nullptr)), "\"id\" is not a text");
  EXPECT_EQ(problem(ordered_json::array()), "A candidate is not an object");
}

}  // namespace
}  // namespace tessaly
