#include "dng/samples/StoredRows.h"

#include "dng/DNGError.h"
#include "dng/samples/SampleFormat.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

namespace tessaly {
namespace {

// Large enough that system calls do not count, small enough to stay in the second-level cache while it is unpacked.
constexpr std::int64_t sliceSize = std::int64_t{1} << 20U;

// Reading across a smaller gap between segments is cheaper than another system call.
constexpr std::int64_t largestSharedGap = 4096;

class SlicedRows {
 public:
  SlicedRows(const InputFile& file, const DNGMetadata& metadata)
      : file_(file),
        encoding_(*metadata.sourceEncoding),
        layout_(SegmentLayout::of(metadata)),
        format_(SampleFormat::of(metadata)) {}

  void forEach(const StoredRowVisitor& visit) {
    for (std::int64_t index = 0; index < layout_.count(); ++index)
      visitSegment(index, visit);
  }

 private:
  void visitSegment(std::int64_t index, const StoredRowVisitor& visit) {
    checkSegment(file_, encoding_, layout_, index);
    const Segment segment = layout_.segment(index);
    const std::int64_t usedBytes = format_.byteCount(segment.columns);
    for (std::int64_t row = 0; row < segment.rows; ++row) {
      const std::int64_t offset = offsetOf(index) + row * layout_.rowBytes();
      if (!holds(offset, usedBytes)) readSlice(index, offset);
      if (!holds(offset, usedBytes)) throwSegmentTruncated(index);
      visit({segment.y + row, segment.x, segment.columns}, bytesAt(offset, usedBytes));
    }
  }

  [[nodiscard]] std::int64_t offsetOf(std::int64_t index) const {
    return encoding_.offsets[static_cast<std::size_t>(index)];
  }

  [[nodiscard]] std::int64_t endOf(std::int64_t index) const { return offsetOf(index) + layout_.byteCount(index); }

  [[nodiscard]] bool holds(std::int64_t offset, std::int64_t length) const {
    return offset >= sliceOffset_ && offset + length <= sliceOffset_ + sliceLength_;
  }

  [[nodiscard]] std::span<const std::byte> bytesAt(std::int64_t offset, std::int64_t length) const {
    return std::span(slice_).subspan(static_cast<std::size_t>(offset - sliceOffset_), static_cast<std::size_t>(length));
  }

  void readSlice(std::int64_t index, std::int64_t offset) {
    const std::int64_t wanted = sliceLengthFrom(index, offset);
    if (static_cast<std::int64_t>(slice_.size()) < wanted) slice_.resize(static_cast<std::size_t>(wanted));
    sliceOffset_ = offset;
    sliceLength_ =
        static_cast<std::int64_t>(file_.readAt(offset, std::span(slice_).first(static_cast<std::size_t>(wanted))));
  }

  // From a row of segment `index` as far as the segments lie one behind the other, in whole rows.
  [[nodiscard]] std::int64_t sliceLengthFrom(std::int64_t index, std::int64_t offset) const {
    std::int64_t end = endOf(index);
    for (std::int64_t next = index + 1; next < layout_.count() && end - offset < sliceSize; ++next) {
      const std::int64_t gap = offsetOf(next) - end;
      if (gap < 0 || gap > largestSharedGap) break;
      end = endOf(next);
    }
    if (end - offset <= sliceSize) return std::min(end, file_.size()) - offset;
    return sliceSize / layout_.rowBytes() * layout_.rowBytes();
  }

  const InputFile& file_;
  const DNGSourceEncoding& encoding_;
  SegmentLayout layout_;
  SampleFormat format_;
  std::vector<std::byte> slice_;
  std::int64_t sliceOffset_ = 0;
  std::int64_t sliceLength_ = 0;
};

}  // namespace

void forEachStoredRow(const InputFile& file, const DNGMetadata& metadata, const StoredRowVisitor& visit) {
  SlicedRows(file, metadata).forEach(visit);
}

void checkSegment(const InputFile& file, const DNGSourceEncoding& encoding, const SegmentLayout& layout,
                  std::int64_t index) {
  const std::int64_t offset = encoding.offsets[static_cast<std::size_t>(index)];
  const std::int64_t byteCount = encoding.byteCounts[static_cast<std::size_t>(index)];
  const bool complete =
      offset <= file.size() && file.size() - offset >= byteCount && byteCount >= layout.byteCount(index);
  if (!complete) throwSegmentTruncated(index);
}

void throwSegmentTruncated(std::int64_t index) {
  throw DNGError::truncated(fmt::format("Raw segment {}", index));
}

}  // namespace tessaly
