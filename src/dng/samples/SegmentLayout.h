// Where the rows of a raw image lie in its strips or tiles: pure arithmetic, no file.
//
// A raw image is cut into segments of equal size, numbered row after row. Strips are as wide as the image; the last one
// may have fewer rows, and stores only those. Tiles at the right and bottom edge reach beyond the image and store the
// padding too. In an image 100 samples wide with tiles of 32 × 16, segment 7 is the last of the second row of tiles: it
// starts at column 96, row 16, and 4 of its 32 stored columns belong to the image.
//
// All arithmetic stays within 64 bits for the sizes that the metadata reader accepts: dimensions and tile dimensions up
// to 100,000, 32-bit row counts. A value; safe to share between threads.
#pragma once

#include "dng/DNGMetadata.h"

#include <cstdint>
#include <optional>

namespace tessaly {

/// One strip or tile.
struct Segment {
  std::int64_t index = 0;
  std::int64_t x = 0;           ///< raw column of its first sample
  std::int64_t y = 0;           ///< raw row of its first sample
  std::int64_t columns = 0;     ///< stored columns that belong to the image
  std::int64_t rows = 0;        ///< stored rows that belong to the image
  std::int64_t storedRows = 0;  ///< rows that its bytes must hold: tiles store their padding rows, strips have none

  bool operator==(const Segment&) const = default;
};

class SegmentLayout {
 public:
  /// The shape of an image before its offsets are known.
  struct Shape {
    std::int64_t rawWidth = 0;
    std::int64_t rawHeight = 0;
    std::int64_t bitsPerSample = 0;
    std::int64_t rowsPerStrip = 0;           ///< not looked at for tiles
    std::optional<std::int64_t> tileWidth;   ///< absent for strips
    std::optional<std::int64_t> tileHeight;  ///< absent for strips
  };

  explicit SegmentLayout(const Shape& shape);

  /// The layout of a record that has a source encoding.
  [[nodiscard]] static SegmentLayout of(const DNGMetadata& metadata);

  [[nodiscard]] bool isTiled() const { return tiled_; }

  /// Number of strips or tiles that the image needs.
  [[nodiscard]] std::int64_t count() const { return across_ * down_; }

  /// Number of segments beside each other: of tiles; strips are alone.
  [[nodiscard]] std::int64_t across() const { return across_; }

  /// Rows of every segment but the strips at the end, which may have fewer.
  [[nodiscard]] std::int64_t segmentHeight() const { return segmentHeight_; }

  /// Columns stored in every row of every segment, tile padding included.
  [[nodiscard]] std::int64_t storedColumns() const { return segmentWidth_; }

  /// Bytes from one stored row of a segment to the next. Rows always start on a byte boundary.
  [[nodiscard]] std::int64_t rowBytes() const { return rowBytes_; }

  [[nodiscard]] Segment segment(std::int64_t index) const;

  /// The fewest bytes that a segment may have.
  [[nodiscard]] std::int64_t byteCount(std::int64_t index) const;

 private:
  std::int64_t rawWidth_;
  std::int64_t rawHeight_;
  bool tiled_;
  std::int64_t segmentWidth_;
  std::int64_t segmentHeight_;
  std::int64_t across_;
  std::int64_t down_;
  std::int64_t rowBytes_;
};

}  // namespace tessaly
