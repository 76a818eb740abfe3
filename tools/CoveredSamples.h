// Which samples of the raw plane defects of a profile cover, and which defects lie over each other.
#pragma once

#include "profile/CameraProfile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace tessaly::tools {

/// Calls `visit(x, y)` for each sample of a defect.
template <typename Visit>
void forEachSample(const DefectPixel& pixel, Visit visit) {
  visit(pixel.x, pixel.y);
}

template <typename Visit>
void forEachSample(const DefectLine& line, Visit visit) {
  for (std::int64_t y = line.yStart; y <= line.yEnd; ++y) {
    for (std::int64_t x = line.x; x < line.x + line.width; ++x)
      visit(x, y);
  }
}

template <typename Visit>
void forEachSample(const DefectSpot& spot, Visit visit) {
  const std::int64_t a = spot.radiusX * spot.radiusX;
  const std::int64_t b = spot.radiusY * spot.radiusY;
  for (std::int64_t y = -spot.radiusY; y <= spot.radiusY; ++y) {
    for (std::int64_t x = -spot.radiusX; x <= spot.radiusX; ++x) {
      if (x * x * b + y * y * a <= a * b) visit(spot.x + x, spot.y + y);
    }
  }
}

/// The samples that some defect of a profile covers.
class CoveredSamples {
 public:
  explicit CoveredSamples(const CameraProfile& profile)
      : width_(profile.rawWidth), covered_(static_cast<std::size_t>(profile.rawWidth * profile.rawHeight)) {
    const auto cover = [this](std::int64_t x, std::int64_t y) { covered_[index(x, y)] = true; };
    for (const DefectPixel& pixel : profile.pixels)
      forEachSample(pixel, cover);
    for (const DefectLine& line : profile.lines)
      forEachSample(line, cover);
    for (const DefectSpot& spot : profile.spots.value_or(std::vector<DefectSpot>()))
      forEachSample(spot, cover);
  }

  [[nodiscard]] bool contains(std::int64_t x, std::int64_t y) const { return covered_[index(x, y)]; }
  [[nodiscard]] const std::vector<bool>& mask() const { return covered_; }

 private:
  [[nodiscard]] std::size_t index(std::int64_t x, std::int64_t y) const {
    return static_cast<std::size_t>(y * width_ + x);
  }

  std::int64_t width_;
  std::vector<bool> covered_;
};

[[nodiscard]] inline bool overlaps(const DefectLine& a, const DefectLine& b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.yStart <= b.yEnd && b.yStart <= a.yEnd;
}

[[nodiscard]] inline bool overlaps(const DefectSpot& a, const DefectSpot& b) {
  return std::abs(a.x - b.x) <= a.radiusX + b.radiusX && std::abs(a.y - b.y) <= a.radiusY + b.radiusY;
}

}  // namespace tessaly::tools
