#include "dng/samples/SegmentLayout.h"

#include <algorithm>
#include <cassert>

namespace tessaly {
namespace {

constexpr std::int64_t ceilingOf(std::int64_t dividend, std::int64_t divisor) {
  return (dividend + divisor - 1) / divisor;
}

}  // namespace

SegmentLayout::SegmentLayout(const Shape& shape)
    : rawWidth_(shape.rawWidth),
      rawHeight_(shape.rawHeight),
      tiled_(shape.tileWidth.has_value()),
      segmentWidth_(shape.tileWidth.value_or(shape.rawWidth)),
      segmentHeight_(shape.tileHeight.value_or(shape.rowsPerStrip)),
      across_(ceilingOf(rawWidth_, segmentWidth_)),
      down_(ceilingOf(rawHeight_, segmentHeight_)),
      rowBytes_(ceilingOf(segmentWidth_ * shape.bitsPerSample, 8)) {
  assert(shape.tileWidth.has_value() == shape.tileHeight.has_value());
  assert(rawWidth_ >= 1 && rawHeight_ >= 1 && segmentWidth_ >= 1 && segmentHeight_ >= 1);
}

SegmentLayout SegmentLayout::of(const DNGMetadata& metadata) {
  assert(metadata.sourceEncoding);
  return SegmentLayout({metadata.rawWidth, metadata.rawHeight, metadata.bitsPerSample, metadata.rowsPerStrip,
                        metadata.sourceEncoding->tileWidth, metadata.sourceEncoding->tileHeight});
}

Segment SegmentLayout::segment(std::int64_t index) const {
  assert(index >= 0 && index < count());
  Segment segment;
  segment.index = index;
  segment.x = index % across_ * segmentWidth_;
  segment.y = index / across_ * segmentHeight_;
  segment.columns = std::min(segmentWidth_, rawWidth_ - segment.x);
  segment.rows = std::min(segmentHeight_, rawHeight_ - segment.y);
  segment.storedRows = tiled_ ? segmentHeight_ : segment.rows;
  return segment;
}

std::int64_t SegmentLayout::byteCount(std::int64_t index) const {
  return segment(index).storedRows * rowBytes_;
}

}  // namespace tessaly
