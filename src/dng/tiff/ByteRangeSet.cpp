#include "dng/tiff/ByteRangeSet.h"

#include <algorithm>
#include <iterator>

namespace tessaly {

void ByteRangeSet::insert(std::int64_t begin, std::int64_t end) {
  if (begin >= end) return;
  auto next = ends_.upper_bound(begin);
  if (next != ends_.begin() && std::prev(next)->second >= begin) {
    begin = std::prev(next)->first;
    end = std::max(end, std::prev(next)->second);
  }
  while (next != ends_.end() && next->first <= end) {
    end = std::max(end, next->second);
    next = ends_.erase(next);
  }
  ends_[begin] = end;
}

std::int64_t ByteRangeSet::endOfStretch(std::int64_t begin) const {
  const auto next = ends_.upper_bound(begin);
  return next == ends_.begin() ? begin : std::max(begin, std::prev(next)->second);
}

std::int64_t ByteRangeSet::beginOfStretch(std::int64_t end) const {
  const auto next = ends_.lower_bound(end);
  if (next == ends_.begin()) return end;
  return std::prev(next)->second >= end ? std::prev(next)->first : end;
}

}  // namespace tessaly
