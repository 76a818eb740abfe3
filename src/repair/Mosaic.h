// The raw plane as the reconstruction rules see it: samples by column and row, their colours, and which are defective.
//
// `Samples` gives a sample as at(x, y), `Defects` tells contains(x, y): those of a whole plane, or of the rows that are
// at hand while a file streams by. Holds references; whatever it was made from must outlive it.
#pragma once

#include "dng/DNGMetadata.h"
#include "repair/MosaicColours.h"

#include <algorithm>
#include <cstdint>

namespace tessaly {

template <typename Samples, typename Defects>
class Mosaic {
 public:
  Mosaic(const Samples& samples, const DNGMetadata& metadata, const MosaicColours& colours, const Defects& defects)
      : samples_(samples), metadata_(metadata), colours_(colours), defects_(defects) {}

  [[nodiscard]] std::int64_t width() const { return metadata_.rawWidth; }
  [[nodiscard]] std::int64_t height() const { return metadata_.rawHeight; }
  [[nodiscard]] bool hasColours() const { return colours_.hasColours(); }

  /// The number of columns after which a row repeats its colours.
  [[nodiscard]] std::int64_t period() const { return colours_.period(); }

  [[nodiscard]] bool contains(std::int64_t x, std::int64_t y) const {
    return x >= 0 && x < width() && y >= 0 && y < height();
  }

  // The three below are for photosites of the plane.
  [[nodiscard]] std::int64_t value(std::int64_t x, std::int64_t y) const { return samples_.at(x, y); }
  [[nodiscard]] bool isDefective(std::int64_t x, std::int64_t y) const { return defects_.contains(x, y); }
  [[nodiscard]] bool sameColour(std::int64_t x, std::int64_t y, std::int64_t otherX, std::int64_t otherY) const {
    return colours_.at(x, y) == colours_.at(otherX, otherY);
  }

  /// What becomes of a rule's answer: a rebuilt sample never exceeds the white level, not even one that kept its old
  /// value for want of neighbours.
  [[nodiscard]] std::uint16_t limited(std::int64_t value) const {
    const std::int64_t white = std::clamp<std::int64_t>(metadata_.whiteLevel, 0, 65535);
    return static_cast<std::uint16_t>(std::clamp<std::int64_t>(value, 0, white));
  }

 private:
  const Samples& samples_;
  const DNGMetadata& metadata_;
  const MosaicColours& colours_;
  const Defects& defects_;
};

}  // namespace tessaly
