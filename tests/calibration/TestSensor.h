// Small sensors and frames in memory, for tests of the detectors.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/RawPlane.h"

#include <cstddef>
#include <cstdint>

namespace tessaly::tests {

/// A sensor without mosaic and without masked border, black level 0, white level 16163: levels are those of the
/// reference range.
[[nodiscard]] inline DNGMetadata linearSensor(std::int64_t width, std::int64_t height) {
  DNGMetadata metadata;
  metadata.rawWidth = width;
  metadata.rawHeight = height;
  metadata.activeWidth = width;
  metadata.activeHeight = height;
  metadata.whiteLevel = DNGMetadata::referenceSignalRange;
  metadata.bitsPerSample = 14;
  return metadata;
}

/// The same with a mosaic.
[[nodiscard]] inline DNGMetadata mosaicSensor(std::int64_t width, std::int64_t height) {
  DNGMetadata metadata = linearSensor(width, height);
  metadata.cfaLayout = CFALayout{2, 2, {0, 1, 1, 2}};
  return metadata;
}

/// The same within a masked border.
[[nodiscard]] inline DNGMetadata withBorder(DNGMetadata metadata, std::int64_t left, std::int64_t top) {
  metadata.activeX = left;
  metadata.activeY = top;
  metadata.rawWidth += left + 5;
  metadata.rawHeight += top + 3;
  return metadata;
}

/// A frame whose active area has one level; the border has another one.
class TestFrame {
 public:
  TestFrame(const DNGMetadata& metadata, std::uint16_t level, std::uint16_t borderLevel = 77)
      : metadata_(metadata), samples_(static_cast<std::size_t>(metadata.pixelCount()), borderLevel) {
    for (std::int64_t y = 0; y < metadata.activeHeight; ++y) {
      for (std::int64_t x = 0; x < metadata.activeWidth; ++x)
        at(x, y) = level;
    }
  }

  /// A sample by active coordinates.
  [[nodiscard]] std::uint16_t& at(std::int64_t x, std::int64_t y) {
    const std::int64_t index = (y + metadata_.activeY) * metadata_.rawWidth + x + metadata_.activeX;
    return samples_[static_cast<std::size_t>(index)];
  }

  /// Adds to a column from one active row on.
  void addToColumn(std::int64_t x, std::int64_t firstRow, int amount) {
    for (std::int64_t y = firstRow; y < metadata_.activeHeight; ++y)
      at(x, y) = static_cast<std::uint16_t>(at(x, y) + amount);
  }

  [[nodiscard]] const RawSamples& samples() const { return samples_; }

 private:
  DNGMetadata metadata_;
  RawSamples samples_;
};

}  // namespace tessaly::tests
