// The samples of a raw image read one bit at a time from the bytes of the file, as simply as it can be written down:
// the oracle for the decoder. It shares no code with it beyond the metadata record and the error type.
#pragma once

#include "dng/DNGError.h"
#include "dng/DNGMetadata.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tessaly::tests {

class NaiveRawReader {
 public:
  /// `file` is the whole file; the record has a source encoding and no compression.
  NaiveRawReader(std::span<const std::byte> file, const DNGMetadata& metadata)
      : file_(file), metadata_(metadata), encoding_(*metadata.sourceEncoding) {}

  [[nodiscard]] std::vector<std::uint16_t> readPlane() {
    plane_.assign(static_cast<std::size_t>(metadata_.rawWidth * metadata_.rawHeight), 0);
    for (std::size_t i = 0; i < encoding_.offsets.size(); ++i)
      readSegment(static_cast<std::int64_t>(i));
    return plane_;
  }

 private:
  void readSegment(std::int64_t index) {
    const std::int64_t segmentWidth = encoding_.tileWidth.value_or(metadata_.rawWidth);
    const std::int64_t segmentHeight = encoding_.tileHeight.value_or(metadata_.rowsPerStrip);
    const std::int64_t across = (metadata_.rawWidth + segmentWidth - 1) / segmentWidth;
    const std::int64_t rowLength = (segmentWidth * metadata_.bitsPerSample + 7) / 8;
    const std::int64_t x0 = index % across * segmentWidth;
    const std::int64_t y0 = index / across * segmentHeight;
    const std::int64_t visibleRows = std::min(segmentHeight, metadata_.rawHeight - y0);
    requireRows(index, encoding_.tileWidth ? segmentHeight : visibleRows, rowLength);
    for (std::int64_t row = 0; row < visibleRows; ++row) {
      for (std::int64_t column = 0; column < std::min(segmentWidth, metadata_.rawWidth - x0); ++column) {
        const std::int64_t rowOffset = encoding_.offsets[static_cast<std::size_t>(index)] + row * rowLength;
        store(x0 + column, y0 + row, stored(rowOffset, column));
      }
    }
  }

  void requireRows(std::int64_t index, std::int64_t rows, std::int64_t rowLength) const {
    const auto i = static_cast<std::size_t>(index);
    const auto size = static_cast<std::int64_t>(file_.size());
    const bool complete = encoding_.offsets[i] <= size && size - encoding_.offsets[i] >= encoding_.byteCounts[i] &&
                          encoding_.byteCounts[i] >= rows * rowLength;
    if (!complete) throw DNGError::truncated("Raw segment " + std::to_string(index));
  }

  [[nodiscard]] unsigned stored(std::int64_t rowOffset, std::int64_t column) const {
    return metadata_.bitsPerSample == 16 ? storedWord(rowOffset, column) : storedBits(rowOffset, column);
  }

  [[nodiscard]] unsigned storedWord(std::int64_t rowOffset, std::int64_t column) const {
    const unsigned first = byteOf(rowOffset + 2 * column);
    const unsigned second = byteOf(rowOffset + 2 * column + 1);
    return encoding_.littleEndian ? second * 256 + first : first * 256 + second;
  }

  [[nodiscard]] unsigned storedBits(std::int64_t rowOffset, std::int64_t column) const {
    unsigned value = 0;
    for (std::int64_t bit = column * metadata_.bitsPerSample; bit < (column + 1) * metadata_.bitsPerSample; ++bit) {
      value = value * 2 + (byteOf(rowOffset + bit / 8) >> (7 - bit % 8)) % 2;
    }
    return value;
  }

  // The byte with its most significant bit first.
  [[nodiscard]] unsigned byteOf(std::int64_t offset) const {
    const auto byte = std::to_integer<unsigned>(file_[static_cast<std::size_t>(offset)]);
    if (encoding_.fillOrder == 1) return byte;
    unsigned reversed = 0;
    for (unsigned k = 0; k < 8; ++k)
      reversed = reversed * 2 + (byte >> k) % 2;
    return reversed;
  }

  void store(std::int64_t x, std::int64_t y, unsigned value) {
    if (!encoding_.linearization.empty()) {
      if (value >= encoding_.linearization.size()) throw DNGError::invalid("Sample exceeds LinearizationTable");
      value = encoding_.linearization[value];
    }
    plane_[static_cast<std::size_t>(y * metadata_.rawWidth + x)] = static_cast<std::uint16_t>(value);
  }

  std::span<const std::byte> file_;
  const DNGMetadata& metadata_;
  const DNGSourceEncoding& encoding_;
  std::vector<std::uint16_t> plane_;
};

}  // namespace tessaly::tests
