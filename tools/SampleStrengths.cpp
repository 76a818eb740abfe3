#include "tools/CoveredSamples.h"
#include "tools/SampleReport.h"
#include "tools/TruthProfile.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <utility>

namespace tessaly::tools {
namespace {

/// The half decade that a strength falls into: 1 to 3, 3 to 10 and so on.
struct HalfDecade {
  double from = 0;
  double to = 0;

  explicit HalfDecade(double strength) {
    const double decade = std::pow(10, std::floor(std::log10(strength)));
    const bool isUpper = strength >= 3 * decade;
    from = isUpper ? 3 * decade : decade;
    to = isUpper ? 10 * decade : 3 * decade;
  }
};

class StrengthCounter {
 public:
  StrengthCounter(const CameraProfile& truth, const CameraProfile& found) : found_(found), covered_(found) {
    for (const DefectPixel& pixel : truth.pixels)
      count(pixel, covered_.contains(pixel.x, pixel.y));
    for (const DefectLine& line : truth.lines)
      count(line, isOver(line, found_.lines));
    for (const DefectSpot& spot : truth.spots.value_or(std::vector<DefectSpot>()))
      count(spot, isOver(spot, found_.spots.value_or(std::vector<DefectSpot>())));
  }

  [[nodiscard]] std::vector<StrengthReport> reports() const {
    std::vector<StrengthReport> all;
    all.reserve(rows_.size());
    for (const auto& [key, report] : rows_)
      all.push_back(report);
    return all;
  }

 private:
  template <typename Defect>
  static bool isOver(const Defect& planted, const std::vector<Defect>& found) {
    return std::any_of(found.begin(), found.end(), [&](const Defect& other) { return overlaps(planted, other); });
  }

  StrengthReport& row(const std::string& reason) {
    const PlantedReason planted(reason);
    StrengthReport report;
    report.kind = planted.kind;
    if (planted.strength && *planted.strength > 0) {
      const HalfDecade range(*planted.strength);
      report.from = range.from;
      report.strength = fmt::format("{:g} … {:g} {}", range.from, range.to, planted.unit);
    }
    return rows_.try_emplace({report.kind, report.from}, report).first->second;
  }

  template <typename Defect>
  void count(const Defect& planted, bool isFound) {
    StrengthReport& report = row(planted.reason);
    ++report.planted;
    report.found += isFound ? 1 : 0;
    forEachSample(planted, [&](std::int64_t x, std::int64_t y) {
      ++report.samples;
      report.uncovered += covered_.contains(x, y) ? 0 : 1;
    });
  }

  const CameraProfile& found_;
  CoveredSamples covered_;
  std::map<std::pair<std::string, double>, StrengthReport> rows_;
};

}  // namespace

CameraProfile findingsProfile(const CameraProfile& truth, const std::filesystem::path& result) {
  CameraProfile profile = truth;
  profile.pixels.clear();
  profile.lines.clear();
  profile.spots.emplace();
  std::ifstream file(result, std::ios::binary);
  const auto json = nlohmann::json::parse(file);
  for (const auto& finding : json.at("secondOpinion")) {
    const std::int64_t x = finding.at("x");
    const std::int64_t y = finding.at("yStart");
    const std::string kind = finding.at("kind");
    if (kind == "line") profile.lines.push_back({x, y, finding.at("yEnd"), finding.at("width"), 1, ""});
    if (kind == "spot") profile.spots->push_back({x, y, finding.at("radiusX"), finding.at("radiusY"), 1, ""});
    if (kind == "pixel") profile.pixels.push_back({x, y, 1, ""});
  }
  return profile;
}

std::vector<StrengthReport> compareStrengths(const CameraProfile& truth, const CameraProfile& found) {
  return StrengthCounter(truth, found).reports();
}

std::string table(const std::vector<StrengthReport>& reports) {
  std::string text = fmt::format("{:<18}{:<20}{:>9}{:>9}{:>9}{:>12}{:>14}\n", "kind", "strength", "planted", "found",
                                 "missed", "samples", "not covered");
  for (const StrengthReport& r : reports) {
    text += fmt::format("{:<18}{:<20}{:>9}{:>9}{:>9}{:>12}{:>14}\n", r.kind, r.strength, r.planted, r.found, r.missed(),
                        r.samples, r.uncovered);
  }
  return text;
}

}  // namespace tessaly::tools
