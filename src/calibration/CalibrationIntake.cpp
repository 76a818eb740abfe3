#include "calibration/CalibrationIntake.h"

#include "calibration/ActiveSamples.h"
#include "calibration/MosaicSteps.h"
#include "dng/DNGError.h"
#include "dng/DNGReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <utility>

namespace tessaly::CalibrationEngine {
namespace {

constexpr std::int64_t leastActiveWidth = 257;
constexpr std::int64_t leastActiveHeight = 65;
constexpr std::int64_t darkLevel = 400;  // of the reference range

using Groups = std::map<std::string, CalibrationGroup>;

void addToGroup(Groups& groups, const std::filesystem::path& url, DNGMetadata metadata) {
  const std::string key = exposureKey(metadata);
  const auto [group, isNew] = groups.try_emplace(key);
  if (isNew) {
    group->second.key = key;
    group->second.metadata = std::move(metadata);
  }
  group->second.urls.push_back(url);
}

void requireCompatible(const DNGMetadata& metadata, const DNGMetadata& reference, const std::filesystem::path& url) {
  if (metadata.isGeometryCompatible(reference)) return;
  throw DNGError::contextualize(DNGError::profileMismatch("Calibration files contain different cameras or DNG layouts"),
                                url);
}

void requireSize(const DNGMetadata& reference) {
  if (reference.activeWidth >= leastActiveWidth && reference.activeHeight >= leastActiveHeight) return;
  throw DNGError::unsupported("Calibration requires an active image of at least 257×65 samples");
}

// The upper median of a coarse grid over the active area; 0 without samples.
std::uint16_t typicalLevel(std::span<const std::uint16_t> raw, const DNGMetadata& metadata) {
  const std::int64_t stride = stepsOf(metadata).levelGrid;
  const ActiveSamples samples = activeSamples(raw, metadata);
  std::vector<std::uint16_t> levels;
  for (std::int64_t y = 0; y < samples.height; y += stride) {
    for (std::int64_t x = 0; x < samples.width; x += stride)
      levels.push_back(samples.row(y)[x]);
  }
  if (levels.empty()) return 0;
  const auto middle = levels.begin() + static_cast<std::ptrdiff_t>(levels.size() / 2);
  std::nth_element(levels.begin(), middle, levels.end());
  return *middle;
}

}  // namespace

// The exposure time is a number or a quotient of numbers of 32 bits: its microseconds fit 64 bits.
std::string exposureKey(const DNGMetadata& metadata) {
  const double microseconds = std::round(metadata.exposureSeconds.value_or(0) * 1'000'000);
  return fmt::format("{}-{}", metadata.iso.value_or(0), static_cast<std::int64_t>(microseconds));
}

CalibrationIntake readIntake(std::span<const std::filesystem::path> urls,
                             const std::function<void(const std::filesystem::path&)>& reading) {
  CalibrationIntake intake;
  Groups groups;
  for (const std::filesystem::path& url : urls) {
    reading(url);
    DNGMetadata metadata = DNGReader::readMetadata(url);
    if (groups.empty()) {
      intake.reference = metadata;
    } else {
      requireCompatible(metadata, intake.reference, url);
    }
    addToGroup(groups, url, std::move(metadata));
  }
  requireSize(intake.reference);
  for (auto& [key, group] : groups)
    intake.groups.push_back(std::move(group));
  return intake;
}

bool isDarkFrame(std::span<const std::uint16_t> raw, const DNGMetadata& metadata) {
  const std::int64_t threshold = metadata.blackLevel + std::max<std::int64_t>(scaledLevel(metadata, darkLevel), 1);
  return typicalLevel(raw, metadata) < threshold;
}

}  // namespace tessaly::CalibrationEngine
