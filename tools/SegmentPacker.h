// Packs samples into the bytes of strips or tiles, one bit at a time: slow and obvious on purpose, as a second opinion
// on the fast decoder and encoder.
#pragma once

#include "tools/TIFFLayout.h"

#include <cstdint>
#include <vector>

namespace tessaly::tools {

/// How the samples of an image lie in its segments.
struct SegmentLayout {
  std::int64_t width = 8;  ///< of the image
  std::int64_t height = 6;
  std::int64_t segmentWidth = 8;
  std::int64_t segmentHeight = 6;
  bool tiled = false;  ///< tiles are padded to full size, the last strip is not
  int bits = 16;
  int fillOrder = 1;
  bool littleEndian = true;
  std::uint8_t paddingByte = 0;

  [[nodiscard]] std::int64_t segmentCount() const;
  [[nodiscard]] std::int64_t rowBytes() const { return (segmentWidth * bits + 7) / 8; }
  [[nodiscard]] std::int64_t segmentBytes(std::int64_t segment) const;
};

/// Appends the bytes of one segment to the file; `samples` holds width × height values, or nothing for all zeros.
void appendSegment(Bytes& file, const SegmentLayout& layout, std::int64_t segment,
                   const std::vector<std::uint16_t>& samples);

}  // namespace tessaly::tools
