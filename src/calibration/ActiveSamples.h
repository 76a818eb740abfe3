// The active area within a raw plane, and the levels of its signal. Views own nothing.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/PlaneView.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace tessaly {

/// The samples of the active area, by active coordinates. Left and right of a row lies the rest of the raw row.
struct ActiveSamples {
  const std::uint16_t* origin = nullptr;
  std::int64_t rawWidth = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;

  [[nodiscard]] const std::uint16_t* row(std::int64_t y) const { return origin + y * rawWidth; }
};

[[nodiscard]] inline ActiveSamples activeSamples(std::span<const std::uint16_t> raw, const DNGMetadata& metadata) {
  const ConstPlaneView plane(raw, metadata);
  return {&plane.at(metadata.activeX, metadata.activeY), metadata.rawWidth, metadata.activeWidth,
          metadata.activeHeight};
}

/// White minus black, at least 1.
[[nodiscard]] inline std::int64_t signalRange(const DNGMetadata& metadata) {
  return std::max<std::int64_t>(metadata.whiteLevel - metadata.blackLevel, 1);
}

/// A level of the 14-bit reference range on the range of this sensor, rounded down.
[[nodiscard]] inline std::int64_t scaledLevel(const DNGMetadata& metadata, std::int64_t referenceLevel) {
  return signalRange(metadata) * referenceLevel / DNGMetadata::referenceSignalRange;
}

}  // namespace tessaly
