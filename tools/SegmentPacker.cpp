#include "tools/SegmentPacker.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace tessaly::tools {
namespace {

std::int64_t ceilingDivision(std::int64_t number, std::int64_t divisor) {
  return (number + divisor - 1) / divisor;
}

std::byte reversedBits(std::byte value) {
  std::byte result{0};
  for (int bit = 0; bit < 8; ++bit) {
    if ((value & (std::byte{1} << bit)) != std::byte{0}) result |= std::byte{0x80} >> bit;
  }
  return result;
}

std::byte bitMask(std::size_t bit, int fillOrder) {
  const auto place = static_cast<int>(bit % 8);
  return fillOrder == 2 ? std::byte{1} << place : std::byte{0x80} >> place;
}

void putBits(std::byte* row, std::span<const std::uint16_t> samples, int bits, int fillOrder) {
  std::size_t position = 0;
  for (const std::uint16_t sample : samples) {
    for (int bit = bits - 1; bit >= 0; --bit, ++position) {
      const std::byte mask = bitMask(position, fillOrder);
      std::byte& target = row[position / 8];
      target = ((sample >> bit) & 1) != 0 ? target | mask : target & ~mask;
    }
  }
}

void putWords(std::byte* row, std::span<const std::uint16_t> samples, const SegmentLayout& layout) {
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const auto low = static_cast<std::byte>(samples[i] & 0xFF);
    const auto high = static_cast<std::byte>(samples[i] >> 8);
    const std::byte first = layout.littleEndian ? low : high;
    const std::byte second = layout.littleEndian ? high : low;
    row[2 * i] = layout.fillOrder == 2 ? reversedBits(first) : first;
    row[2 * i + 1] = layout.fillOrder == 2 ? reversedBits(second) : second;
  }
}

void putRow(std::byte* row, std::span<const std::uint16_t> samples, const SegmentLayout& layout) {
  if (layout.bits == 16) {
    putWords(row, samples, layout);
  } else {
    putBits(row, samples, layout.bits, layout.fillOrder);
  }
}

}  // namespace

std::int64_t SegmentLayout::segmentCount() const {
  return ceilingDivision(width, segmentWidth) * ceilingDivision(height, segmentHeight);
}

std::int64_t SegmentLayout::segmentBytes(std::int64_t segment) const {
  const std::int64_t rows = tiled ? segmentHeight : std::min(segmentHeight, height - segment * segmentHeight);
  return rows * rowBytes();
}

void appendSegment(Bytes& file, const SegmentLayout& layout, std::int64_t segment,
                   const std::vector<std::uint16_t>& samples) {
  const std::vector<std::uint16_t> zeros(samples.empty() ? static_cast<std::size_t>(layout.segmentWidth) : 0);
  const std::int64_t across = ceilingDivision(layout.width, layout.segmentWidth);
  const std::int64_t x0 = segment % across * layout.segmentWidth;
  const std::int64_t y0 = segment / across * layout.segmentHeight;
  const auto columns = static_cast<std::size_t>(std::min(layout.segmentWidth, layout.width - x0));
  const std::int64_t rows = std::min(layout.segmentHeight, layout.height - y0);

  const std::size_t start = file.size();
  file.resize(start + static_cast<std::size_t>(layout.segmentBytes(segment)), std::byte{layout.paddingByte});
  for (std::int64_t r = 0; r < rows; ++r) {
    std::byte* row = file.data() + start + r * layout.rowBytes();
    const std::uint16_t* source = samples.empty() ? zeros.data() : samples.data() + (y0 + r) * layout.width + x0;
    putRow(row, {source, columns}, layout);
  }
}

}  // namespace tessaly::tools
