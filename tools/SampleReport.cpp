#include "tools/SampleReport.h"

#include "dng/DNGReader.h"
#include "profile/CameraProfileJSON.h"
#include "tools/CoveredSamples.h"
#include "tools/SampleSet.h"
#include "tools/SampleTexture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <stdexcept>

namespace tessaly::tools {
namespace {

bool isPartial(const DefectLine& line, const CameraProfile& profile) {
  return line.yStart > profile.activeY;
}

/// The samples that belong to one line of the report.
struct KindSamples {
  std::string kind;
  std::vector<bool> covered;
};

KindSamples linesOf(CameraProfile bare, const CameraProfile& truth, bool partial) {
  std::copy_if(truth.lines.begin(), truth.lines.end(), std::back_inserter(bare.lines),
               [&](const DefectLine& line) { return isPartial(line, truth) == partial; });
  return {partial ? "partial column" : "column", CoveredSamples(bare).mask()};
}

std::vector<KindSamples> samplesByKind(const CameraProfile& truth) {
  CameraProfile bare = truth;
  bare.pixels.clear();
  bare.lines.clear();
  bare.spots.reset();
  CameraProfile pixels = bare, spots = bare;
  pixels.pixels = truth.pixels;
  spots.spots = truth.spots;
  std::vector<bool> elsewhere = CoveredSamples(truth).mask();
  elsewhere.flip();
  return {{"pixel", CoveredSamples(pixels).mask()},
          linesOf(bare, truth, false),
          linesOf(bare, truth, true),
          {"spot", CoveredSamples(spots).mask()},
          {"elsewhere", elsewhere}};
}

/// One photograph as it is, as it was repaired, and as a perfect sensor would have taken it.
struct Planes {
  RawSamples scene;
  RawSamples damaged;
  RawSamples rebuilt;
};

Planes readPlanes(const SampleSetFolders& set, const std::filesystem::path& repaired) {
  const std::filesystem::path name = repaired.filename();
  return {DNGReader::readPlane(set.undamaged / name).samples, DNGReader::readPlane(set.photographs / name).samples,
          DNGReader::readPlane(repaired).samples};
}

void requireSize(const Planes& planes, std::size_t samples, const std::string& name) {
  for (const RawSamples* plane : {&planes.scene, &planes.damaged, &planes.rebuilt}) {
    if (plane->size() != samples)
      throw std::runtime_error(name + " has another size than the sensor of the sample set.");
  }
}

SampleDistance distance(const RawSamples& samples, const RawSamples& scene, const std::vector<bool>& where) {
  SampleDistance result;
  std::int64_t sum = 0, count = 0;
  for (std::size_t i = 0; i < scene.size(); ++i) {
    if (!where[i]) continue;
    const std::int64_t difference = std::abs(std::int64_t{samples[i]} - std::int64_t{scene[i]});
    sum += difference;
    result.largest = std::max(result.largest, difference);
    ++count;
  }
  if (count > 0) result.mean = static_cast<double>(sum) / static_cast<double>(count);
  return result;
}

DistanceReport compareKind(const std::string& photograph, const Planes& planes, const KindSamples& kind,
                           std::size_t width) {
  DistanceReport report{photograph, kind.kind, 0, 0, {}, {}, 0, 0, {}};
  for (std::size_t i = 0; i < kind.covered.size(); ++i) {
    if (!kind.covered[i]) continue;
    ++report.samples;
    report.rebuilt += planes.damaged[i] != planes.rebuilt[i] ? 1 : 0;
  }
  report.damaged = distance(planes.damaged, planes.scene, kind.covered);
  report.repaired = distance(planes.rebuilt, planes.scene, kind.covered);
  report.damagedStripe = remainingStripe(planes.damaged, planes.scene, kind.covered, width);
  report.repairedStripe = remainingStripe(planes.rebuilt, planes.scene, kind.covered, width);
  report.grain = relativeGrain(planes.rebuilt, planes.scene, kind.covered, width);
  return report;
}

/// In the order of their names.
std::vector<std::filesystem::path> repairedPhotographs(const SampleSetFolders& set,
                                                       const std::filesystem::path& repaired) {
  std::vector<std::filesystem::path> copies;
  for (const auto& entry : std::filesystem::directory_iterator(set.photographs)) {
    const std::filesystem::path copy = repaired / entry.path().filename();
    if (std::filesystem::exists(copy)) copies.push_back(copy);
  }
  std::sort(copies.begin(), copies.end());
  return copies;
}

template <class Defect>
std::int64_t countOver(const Defect& defect, const std::vector<Defect>& others) {
  return std::count_if(others.begin(), others.end(), [&](const Defect& other) { return overlaps(defect, other); });
}

/// Counts a planted defect with the entries of a profile that touch it.
template <class Defect>
void countPlanted(KindReport& report, const Defect& planted, const std::vector<Defect>& found) {
  const std::int64_t touching = countOver(planted, found);
  ++report.planted;
  report.found += touching > 0 ? 1 : 0;
  report.second += std::max<std::int64_t>(touching - 1, 0);
}

KindReport comparePixels(const CameraProfile& truth, const CameraProfile& found, const CoveredSamples& planted) {
  const CoveredSamples covered(found);
  KindReport report{"pixel", static_cast<std::int64_t>(truth.pixels.size()), 0, 0, 0};
  for (const DefectPixel& pixel : truth.pixels)
    report.found += covered.contains(pixel.x, pixel.y) ? 1 : 0;
  for (const DefectPixel& pixel : found.pixels)
    report.wrong += planted.contains(pixel.x, pixel.y) ? 0 : 1;
  return report;
}

KindReport compareLines(const CameraProfile& truth, const CameraProfile& found, bool partial) {
  KindReport report{partial ? "partial column" : "column", 0, 0, 0, 0};
  for (const DefectLine& line : truth.lines) {
    if (isPartial(line, truth) == partial) countPlanted(report, line, found.lines);
  }
  for (const DefectLine& line : found.lines) {
    if (isPartial(line, found) == partial && countOver(line, truth.lines) == 0) ++report.wrong;
  }
  return report;
}

KindReport compareSpots(const CameraProfile& truth, const CameraProfile& found) {
  const auto planted = truth.spots.value_or(std::vector<DefectSpot>());
  const auto listed = found.spots.value_or(std::vector<DefectSpot>());
  KindReport report{"spot", 0, 0, 0, 0};
  for (const DefectSpot& spot : planted)
    countPlanted(report, spot, listed);
  for (const DefectSpot& spot : listed)
    report.wrong += countOver(spot, planted) == 0 ? 1 : 0;
  return report;
}

}  // namespace

std::vector<DistanceReport> comparePhotographs(const std::filesystem::path& sampleSet,
                                               const std::filesystem::path& repaired) {
  const SampleSetFolders set(sampleSet);
  const CameraProfile truth = readProfile(set.truth);
  const std::vector<KindSamples> kinds = samplesByKind(truth);
  std::vector<DistanceReport> reports;
  for (const std::filesystem::path& copy : repairedPhotographs(set, repaired)) {
    const std::string name = copy.filename().string();
    const Planes planes = readPlanes(set, copy);
    requireSize(planes, kinds.front().covered.size(), name);
    for (const KindSamples& kind : kinds)
      reports.push_back(compareKind(name, planes, kind, static_cast<std::size_t>(truth.rawWidth)));
  }
  return reports;
}

std::vector<KindReport> compareProfiles(const CameraProfile& truth, const CameraProfile& found) {
  const CoveredSamples planted(truth);
  return {comparePixels(truth, found, planted), compareLines(truth, found, false), compareLines(truth, found, true),
          compareSpots(truth, found)};
}

std::string table(const std::vector<DistanceReport>& reports) {
  std::string text =
      fmt::format("{:<24}{:<16}{:>9}{:>9}{:>20}{:>20}{:>20}{:>8}\n{:<24}{:<16}{:>9}{:>9}{:>20}{:>20}{:>20}{:>8}\n", "",
                  "", "", "", "damaged: distance", "repaired: distance", "stripe", "grain", "photograph", "kind",
                  "samples", "rebuilt", "mean, largest", "mean, largest", "damaged, repaired", "");
  for (const DistanceReport& r : reports) {
    const std::string grain = r.grain ? fmt::format("{:.2f}", *r.grain) : "";
    text += fmt::format("{:<24}{:<16}{:>9}{:>9}{:>12.1f}, {:>6}{:>12.1f}, {:>6}{:>12.2f}, {:>6.2f}{:>8}\n",
                        r.photograph, r.kind, r.samples, r.rebuilt, r.damaged.mean, r.damaged.largest, r.repaired.mean,
                        r.repaired.largest, r.damagedStripe, r.repairedStripe, grain);
  }
  return text;
}

std::string table(const std::vector<KindReport>& reports) {
  std::string text =
      fmt::format("{:<16}{:>9}{:>9}{:>9}{:>9}{:>9}\n", "kind", "planted", "found", "missed", "false", "second");
  for (const KindReport& r : reports) {
    text += fmt::format("{:<16}{:>9}{:>9}{:>9}{:>9}{:>9}\n", r.kind, r.planted, r.found, r.missed(), r.wrong, r.second);
  }
  return text;
}

}  // namespace tessaly::tools
