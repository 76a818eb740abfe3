// The colour of every photosite of a raw plane, looked up in tables: the remainders that a repeating pattern asks for
// would cost more than everything else about rebuilding a sample.
//
// Immutable; safe to share between threads.
#pragma once

#include "dng/DNGMetadata.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessaly {

class MosaicColours {
 public:
  /// The pattern is anchored at the active area and continues beyond it. Without a pattern all photosites are alike.
  explicit MosaicColours(const DNGMetadata& metadata);

  [[nodiscard]] bool hasColours() const { return hasColours_; }

  /// The number of columns after which a row repeats its colours.
  [[nodiscard]] std::int64_t period() const { return period_; }

  /// Of a photosite of the plane, in raw coordinates.
  [[nodiscard]] std::uint8_t at(std::int64_t x, std::int64_t y) const {
    return pattern_[rowStarts_[static_cast<std::size_t>(y)] + columns_[static_cast<std::size_t>(x)]];
  }

 private:
  bool hasColours_;
  std::int64_t period_;
  std::vector<std::uint8_t> pattern_;
  std::vector<std::uint32_t> columns_;    // of the pattern, by raw column
  std::vector<std::uint32_t> rowStarts_;  // in the pattern, by raw row
};

}  // namespace tessaly
