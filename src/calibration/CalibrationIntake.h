// Takes calibration files in: reads what they say about themselves, checks that they belong together, and sorts them
// into exposure groups of bright and dark frames.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "dng/RawPlane.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tessaly {

/// The frames of one exposure setting.
struct CalibrationGroup {
  static constexpr std::size_t leastMeasured = 3;

  std::string key;                          ///< the exposure key
  std::vector<std::filesystem::path> urls;  ///< in sorted order
  DNGMetadata metadata;                     ///< of the first file
  bool isDark = false;

  /// Whether there are frames enough to tell a fixed defect from noise; smaller groups are only counted.
  [[nodiscard]] bool isMeasured() const { return urls.size() >= leastMeasured; }
};

namespace CalibrationEngine {

/// ISO and exposure time in whole microseconds, 0 for what is absent: ISO 200 at 1/125 s is "200-8000".
[[nodiscard]] std::string exposureKey(const DNGMetadata& metadata);

/// All files, read and checked.
struct CalibrationIntake {
  DNGMetadata reference;                 ///< of the first file
  std::vector<CalibrationGroup> groups;  ///< by key; not yet told bright from dark
};

/// Reads the metadata of all files, in the given order; `reading` is called before each. Throws DNGError for a file
/// that cannot be read or does not match the first, with its name, and for a sensor that is too small.
[[nodiscard]] CalibrationIntake readIntake(std::span<const std::filesystem::path> urls,
                                           const std::function<void(const std::filesystem::path&)>& reading);

/// Whether this frame saw no light, by the median of a grid of samples.
[[nodiscard]] bool isDarkFrame(std::span<const std::uint16_t> raw, const DNGMetadata& metadata);

}  // namespace CalibrationEngine
}  // namespace tessaly
