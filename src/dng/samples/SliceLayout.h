// The rows of a raw image in slices of about 256 KiB, one below the other, and where their bytes lie in the file: pure
// arithmetic.
//
// In memory a slice is a block of rows for each column of tiles (strips count as one column), one block behind the
// other at equal distances. A slice may go over many strips, but not from one row of tiles to the next.
//
// Immutable; safe to share between threads. The record that it was made of must outlive it.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/samples/SampleFormat.h"
#include "dng/samples/SegmentLayout.h"

#include <cstdint>
#include <vector>

namespace tessaly {

/// The rows from `first` up to, but excluding, `last`.
struct SliceRows {
  std::int64_t first = 0;
  std::int64_t last = 0;

  [[nodiscard]] std::int64_t count() const { return last - first; }

  bool operator==(const SliceRows&) const = default;
};

/// Bytes of a slice that lie one behind the other both in the file and in memory.
struct SlicePiece {
  std::int64_t segment = 0;  ///< the first one that it is of; the others follow
  std::int64_t offset = 0;   ///< in the file
  std::int64_t place = 0;    ///< in the slice
  std::int64_t length = 0;

  bool operator==(const SlicePiece&) const = default;
};

class SliceLayout {
 public:
  /// Few enough bytes to stay in the second-level cache with their neighbours, enough for system calls not to count.
  static constexpr std::int64_t usualBytes = std::int64_t{256} * 1024;

  /// For a record with a source encoding. A slice takes about `sliceBytes`, but has one row at least.
  explicit SliceLayout(const DNGMetadata& metadata, std::int64_t sliceBytes = usualBytes);

  /// The slice that starts with a row: the first row of the image, or the one below another slice.
  [[nodiscard]] SliceRows sliceFrom(std::int64_t row) const;

  /// The most rows of a slice.
  [[nodiscard]] std::int64_t mostRows() const { return mostRows_; }

  /// The bytes that a slice takes in memory.
  [[nodiscard]] std::int64_t byteCount() const { return segments_.across() * blockBytes(); }

  [[nodiscard]] std::vector<SlicePiece> pieces(const SliceRows& rows) const;

  /// Whether whatever lies before the end of a slice has been visited with it, in an image whose segments rise in the
  /// file: tiles that are cut into slices are visited in turns.
  [[nodiscard]] bool endsSegments(const SliceRows& rows) const;

  /// The place of a sample in the bits of its slice, which starts with row `first`.
  [[nodiscard]] std::int64_t bitInSlice(std::int64_t x, std::int64_t y, std::int64_t first) const {
    const std::int64_t tile = isTiled_ ? x / segments_.storedColumns() : 0;
    const std::int64_t row = tile * blockBytes() + (y - first) * segments_.rowBytes();
    return 8 * row + (x - tile * segments_.storedColumns()) * bits_;
  }

  /// The place of a sample in the bits of the file.
  [[nodiscard]] std::int64_t bitInFile(std::int64_t x, std::int64_t y) const;

 private:
  [[nodiscard]] std::int64_t blockBytes() const { return mostRows_ * segments_.rowBytes(); }
  [[nodiscard]] std::int64_t offset(std::int64_t segment) const;

  const DNGMetadata& metadata_;
  SegmentLayout segments_;
  bool isTiled_;
  std::int64_t bits_;
  std::int64_t mostRows_;
};

}  // namespace tessaly
