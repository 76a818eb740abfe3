#include "dng/copy/SegmentOrder.h"

#include "dng/samples/SegmentLayout.h"

#include <algorithm>
#include <numeric>

namespace tessaly {

std::vector<std::int64_t> segmentsInFileOrder(const DNGSourceEncoding& encoding) {
  const std::vector<std::int64_t>& offsets = encoding.offsets;
  std::vector<std::int64_t> order(offsets.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](std::int64_t a, std::int64_t b) {
    return offsets[static_cast<std::size_t>(a)] < offsets[static_cast<std::size_t>(b)];
  });
  return order;
}

bool segmentsShareBytes(const DNGMetadata& metadata) {
  const SegmentLayout layout = SegmentLayout::of(metadata);
  std::int64_t end = 0;
  for (const std::int64_t index : segmentsInFileOrder(*metadata.sourceEncoding)) {
    const std::int64_t offset = metadata.sourceEncoding->offsets[static_cast<std::size_t>(index)];
    if (offset < end) return true;
    end = offset + layout.byteCount(index);
  }
  return false;
}

}  // namespace tessaly
