// The raw plane as the reconstruction rules see it: samples by column and row, their colours, and which are defective.
//
// Holds references; whatever it was made from must outlive it.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/PlaneView.h"
#include "repair/DefectMap.h"

#include <cstdint>

namespace tessaly {

class Mosaic {
 public:
  Mosaic(PlaneView samples, const DNGMetadata& metadata, const SampleMask& defects)
      : samples_(samples), metadata_(metadata), defects_(defects), layout_(layoutOf(metadata)) {}

  [[nodiscard]] std::int64_t width() const { return metadata_.rawWidth; }
  [[nodiscard]] std::int64_t height() const { return metadata_.rawHeight; }
  [[nodiscard]] bool hasColours() const { return layout_ != nullptr; }

  /// The number of columns after which a row repeats its colours.
  [[nodiscard]] std::int64_t period() const { return layout_ != nullptr && layout_->width > 1 ? layout_->width : 1; }

  [[nodiscard]] bool contains(std::int64_t x, std::int64_t y) const {
    return x >= 0 && x < width() && y >= 0 && y < height();
  }
  [[nodiscard]] std::int64_t value(std::int64_t x, std::int64_t y) const { return samples_.at(x, y); }
  [[nodiscard]] bool isDefective(std::int64_t x, std::int64_t y) const { return defects_.contains(x, y); }

  /// The colour pattern is anchored at the active area, so raw coordinates are moved there.
  [[nodiscard]] bool sameColour(std::int64_t x, std::int64_t y, std::int64_t otherX, std::int64_t otherY) const {
    if (layout_ == nullptr) return true;
    return layout_->matches(x - metadata_.activeX, y - metadata_.activeY, otherX - metadata_.activeX,
                            otherY - metadata_.activeY);
  }

  void setValue(std::int64_t x, std::int64_t y, std::int64_t value) {
    samples_.at(x, y) = static_cast<std::uint16_t>(value);
  }

 private:
  static const CFALayout* layoutOf(const DNGMetadata& metadata) {
    return metadata.cfaLayout ? &*metadata.cfaLayout : nullptr;
  }

  PlaneView samples_;
  const DNGMetadata& metadata_;
  const SampleMask& defects_;
  const CFALayout* layout_;
};

}  // namespace tessaly
