#include "tools/SampleReport.h"

#include "dng/DNGReader.h"
#include "profile/CameraProfileJSON.h"
#include "tools/SampleSet.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

namespace tessaly::tools {
namespace {

/// Which samples of the raw plane some defect of a profile covers.
class CoveredSamples {
 public:
  explicit CoveredSamples(const CameraProfile& profile)
      : width_(profile.rawWidth), covered_(static_cast<std::size_t>(profile.rawWidth * profile.rawHeight)) {
    for (const DefectPixel& pixel : profile.pixels)
      cover(pixel.x, pixel.y);
    for (const DefectLine& line : profile.lines)
      coverLine(line);
    for (const DefectSpot& spot : profile.spots.value_or(std::vector<DefectSpot>()))
      coverSpot(spot);
  }

  [[nodiscard]] bool contains(std::int64_t x, std::int64_t y) const { return covered_[index(x, y)]; }
  [[nodiscard]] bool containsIndex(std::size_t index) const { return covered_[index]; }

 private:
  [[nodiscard]] std::size_t index(std::int64_t x, std::int64_t y) const {
    return static_cast<std::size_t>(y * width_ + x);
  }
  void cover(std::int64_t x, std::int64_t y) { covered_[index(x, y)] = true; }

  void coverLine(const DefectLine& line) {
    for (std::int64_t y = line.yStart; y <= line.yEnd; ++y) {
      for (std::int64_t x = line.x; x < line.x + line.width; ++x)
        cover(x, y);
    }
  }

  void coverSpot(const DefectSpot& spot) {
    const std::int64_t a = spot.radiusX * spot.radiusX, b = spot.radiusY * spot.radiusY;
    for (std::int64_t y = -spot.radiusY; y <= spot.radiusY; ++y) {
      for (std::int64_t x = -spot.radiusX; x <= spot.radiusX; ++x) {
        if (x * x * b + y * y * a <= a * b) cover(spot.x + x, spot.y + y);
      }
    }
  }

  std::int64_t width_;
  std::vector<bool> covered_;
};

SampleDistance distance(const RawSamples& samples, const RawSamples& scene, const CoveredSamples& where) {
  SampleDistance result;
  std::int64_t sum = 0, count = 0;
  for (std::size_t i = 0; i < scene.size(); ++i) {
    if (!where.containsIndex(i)) continue;
    const std::int64_t difference = std::abs(std::int64_t{samples[i]} - std::int64_t{scene[i]});
    sum += difference;
    result.largest = std::max(result.largest, difference);
    ++count;
  }
  if (count > 0) result.mean = static_cast<double>(sum) / static_cast<double>(count);
  return result;
}

std::int64_t differingSamples(const RawSamples& a, const RawSamples& b) {
  std::int64_t count = 0;
  for (std::size_t i = 0; i < a.size(); ++i)
    count += a[i] != b[i] ? 1 : 0;
  return count;
}

PhotographReport comparePhotograph(const SampleSetFolders& set, const std::filesystem::path& repaired,
                                   const CoveredSamples& defects) {
  const std::filesystem::path name = repaired.filename();
  const RawSamples scene = DNGReader::readPlane(set.undamaged / name).samples;
  const RawSamples damaged = DNGReader::readPlane(set.photographs / name).samples;
  const RawSamples rebuilt = DNGReader::readPlane(repaired).samples;
  PhotographReport report{name.string(), 0, differingSamples(damaged, rebuilt), {}, {}};
  for (std::size_t i = 0; i < scene.size(); ++i)
    report.defectiveSamples += defects.containsIndex(i) ? 1 : 0;
  report.damaged = distance(damaged, scene, defects);
  report.repaired = distance(rebuilt, scene, defects);
  return report;
}

bool isPartial(const DefectLine& line, const CameraProfile& profile) {
  return line.yStart > profile.activeY;
}

bool overlaps(const DefectLine& a, const DefectLine& b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.yStart <= b.yEnd && b.yStart <= a.yEnd;
}

bool overlaps(const DefectSpot& a, const DefectSpot& b) {
  return std::abs(a.x - b.x) <= a.radiusX + b.radiusX && std::abs(a.y - b.y) <= a.radiusY + b.radiusY;
}

KindReport comparePixels(const CameraProfile& truth, const CameraProfile& found, const CoveredSamples& planted) {
  const CoveredSamples covered(found);
  KindReport report{"pixel", static_cast<std::int64_t>(truth.pixels.size()), 0, 0};
  for (const DefectPixel& pixel : truth.pixels)
    report.found += covered.contains(pixel.x, pixel.y) ? 1 : 0;
  for (const DefectPixel& pixel : found.pixels)
    report.wrong += planted.contains(pixel.x, pixel.y) ? 0 : 1;
  return report;
}

KindReport compareLines(const CameraProfile& truth, const CameraProfile& found, bool partial) {
  KindReport report{partial ? "partial column" : "column", 0, 0, 0};
  const auto anyOverlaps = [](const DefectLine& line, const std::vector<DefectLine>& lines) {
    return std::any_of(lines.begin(), lines.end(), [&](const DefectLine& other) { return overlaps(line, other); });
  };
  for (const DefectLine& line : truth.lines) {
    if (isPartial(line, truth) != partial) continue;
    ++report.planted;
    report.found += anyOverlaps(line, found.lines) ? 1 : 0;
  }
  for (const DefectLine& line : found.lines) {
    if (isPartial(line, found) == partial && !anyOverlaps(line, truth.lines)) ++report.wrong;
  }
  return report;
}

KindReport compareSpots(const CameraProfile& truth, const CameraProfile& found) {
  const auto planted = truth.spots.value_or(std::vector<DefectSpot>());
  const auto listed = found.spots.value_or(std::vector<DefectSpot>());
  const auto anyOverlaps = [](const DefectSpot& spot, const std::vector<DefectSpot>& spots) {
    return std::any_of(spots.begin(), spots.end(), [&](const DefectSpot& other) { return overlaps(spot, other); });
  };
  KindReport report{"spot", static_cast<std::int64_t>(planted.size()), 0, 0};
  for (const DefectSpot& spot : planted)
    report.found += anyOverlaps(spot, listed) ? 1 : 0;
  for (const DefectSpot& spot : listed)
    report.wrong += anyOverlaps(spot, planted) ? 0 : 1;
  return report;
}

}  // namespace

std::vector<PhotographReport> comparePhotographs(const std::filesystem::path& sampleSet,
                                                 const std::filesystem::path& repaired) {
  const SampleSetFolders set(sampleSet);
  const CoveredSamples defects(readProfile(set.truth));
  std::vector<PhotographReport> reports;
  for (const auto& entry : std::filesystem::directory_iterator(set.photographs)) {
    const std::filesystem::path copy = repaired / entry.path().filename();
    if (std::filesystem::exists(copy)) reports.push_back(comparePhotograph(set, copy, defects));
  }
  std::sort(reports.begin(), reports.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
  return reports;
}

std::vector<KindReport> compareProfiles(const CameraProfile& truth, const CameraProfile& found) {
  const CoveredSamples planted(truth);
  return {comparePixels(truth, found, planted), compareLines(truth, found, false), compareLines(truth, found, true),
          compareSpots(truth, found)};
}

std::string table(const std::vector<PhotographReport>& reports) {
  std::string text = fmt::format("{:<24}{:>10}{:>9}{:>20}{:>20}\n{:<24}{:>10}{:>9}{:>20}{:>20}\n", "", "defective", "",
                                 "damaged: distance", "repaired: distance", "photograph", "samples", "rebuilt",
                                 "mean, largest", "mean, largest");
  for (const PhotographReport& r : reports) {
    text += fmt::format("{:<24}{:>10}{:>9}{:>12.1f}, {:>6}{:>12.1f}, {:>6}\n", r.name, r.defectiveSamples,
                        r.changedSamples, r.damaged.mean, r.damaged.largest, r.repaired.mean, r.repaired.largest);
  }
  return text;
}

std::string table(const std::vector<KindReport>& reports) {
  std::string text = fmt::format("{:<16}{:>9}{:>9}{:>9}{:>9}\n", "kind", "planted", "found", "missed", "false");
  for (const KindReport& r : reports) {
    text += fmt::format("{:<16}{:>9}{:>9}{:>9}{:>9}\n", r.kind, r.planted, r.found, r.missed(), r.wrong);
  }
  return text;
}

}  // namespace tessaly::tools
