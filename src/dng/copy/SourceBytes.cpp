#include "dng/copy/SourceBytes.h"

#include "dng/DNGError.h"

#include <fmt/format.h>

namespace tessaly {

void copySourceBytes(PartialFile& file, const SourceImage& source, const CopyRange& range,
                     std::span<std::byte> buffer) {
  if (file.copyFrom(source.container().file(), range, buffer) == range.length) return;
  throw DNGError::truncated(fmt::format("TIFF field at {}, length {}", range.from, range.length));
}

}  // namespace tessaly
