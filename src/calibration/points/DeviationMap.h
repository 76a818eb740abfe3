// What the frames of one exposure group say about every photosite of the active area: the sum of its deviations and
// the number of frames in which it was too bright. Five bytes a photosite, kept from group to group.
//
// Used by one thread; adding a frame spreads over several itself, with the same result for any number of them.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/RawPlane.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessaly {

class DeviationMap {
 public:
  /// Photosites nearer to the border of the active area are not measured: their sums and counts are 0.
  static constexpr std::int64_t margin = 2;

  /// `metadata` describes all frames; it must outlive the map.
  DeviationMap(const DNGMetadata& metadata, int threads);

  /// Forgets all frames and begins a group; the first call too, before anything else.
  void reset(bool isDark);

  /// Adds a frame, given as its full raw plane.
  void add(std::span<const std::uint16_t> raw);

  [[nodiscard]] const DNGMetadata& metadata() const { return metadata_; }
  [[nodiscard]] int threads() const { return threads_; }
  [[nodiscard]] bool isDark() const { return isDark_; }
  [[nodiscard]] std::int64_t frameCount() const { return frameCount_; }
  [[nodiscard]] std::int64_t width() const { return metadata_.activeWidth; }
  [[nodiscard]] std::int64_t height() const { return metadata_.activeHeight; }

  /// Sums of a row, `width` of them.
  [[nodiscard]] const std::int32_t* sums(std::int64_t y) const { return sums_.data() + y * width(); }

  /// The mean deviation at `index` = y × width + x; negative where the photosite is too dark. Needs a frame.
  [[nodiscard]] double mean(std::int64_t index) const {
    return static_cast<double>(sums_[static_cast<std::size_t>(index)]) / static_cast<double>(frameCount_);
  }

  /// The number of frames that agree in sign; a deviation of 0 counts as negative.
  [[nodiscard]] std::int64_t agreeingFrames(std::int64_t index) const {
    const std::int64_t positives = positives_[static_cast<std::size_t>(index)];
    return std::max(positives, frameCount_ - positives);
  }

  /// Makes the photosite one without a deviation.
  void erase(std::int64_t index) { sums_[static_cast<std::size_t>(index)] = 0; }

 private:
  void addRow(std::span<const std::uint16_t> raw, std::int64_t y);

  const DNGMetadata& metadata_;
  int threads_;
  bool isDark_ = false;
  std::int64_t frameCount_ = 0;
  std::vector<std::int32_t, UninitializedAllocator<std::int32_t>> sums_;
  std::vector<std::uint8_t, UninitializedAllocator<std::uint8_t>> positives_;
};

}  // namespace tessaly
