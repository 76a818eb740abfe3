#include "dng/copy/PlannedBytes.h"

#include "dng/DNGError.h"
#include "dng/copy/BytePart.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaly {
namespace {

/// Where a block of the copy and a stretch of it that is looked at meet.
struct Overlap {
  std::int64_t inBlock = 0;
  std::int64_t inStretch = 0;
  std::int64_t length = 0;  // not positive when they do not meet
};

Overlap overlap(std::int64_t block, std::int64_t blockLength, std::int64_t stretch, std::int64_t stretchLength) {
  const std::int64_t first = std::max(block, stretch);
  const std::int64_t end = std::min(block + blockLength, stretch + stretchLength);
  return {first - block, first - stretch, end - first};
}

}  // namespace

void PlannedBytes::read(std::int64_t offset, std::span<std::byte> into) const {
  const std::int64_t ofSource =
      std::clamp<std::int64_t>(source_.container().file().size() - offset, 0, std::ssize(into));
  std::fill(into.begin() + ofSource, into.end(), std::byte{0});
  place({0, 0, source_.container().file().size()}, offset, into);
  for (const CopyRange& value : plan_.values)
    place(value, offset, into);
  for (const FilePatch& patch : plan_.patches) {
    const Overlap common = overlap(patch.offset, std::ssize(patch.bytes), offset, std::ssize(into));
    if (common.length <= 0) continue;
    std::copy_n(patch.bytes.begin() + common.inBlock, common.length, &into[static_cast<std::size_t>(common.inStretch)]);
  }
}

void PlannedBytes::place(const CopyRange& range, std::int64_t offset, std::span<std::byte> into) const {
  const Overlap common = overlap(range.to, range.length, offset, std::ssize(into));
  if (common.length <= 0) return;
  const std::span<std::byte> target = part(into, common.inStretch, common.length);
  const std::int64_t from = range.from + common.inBlock;
  if (source_.container().file().readAt(from, target) == target.size()) return;
  throw DNGError::truncated(fmt::format("TIFF field at {}, length {}", from, common.length));
}

}  // namespace tessaly
