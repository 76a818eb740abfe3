// What a copy of a source holds besides the bytes of the source at their own places, and how long it is.
//
// Values without behaviour, worked out before any file is made.
#pragma once

#include "platform/PartialFile.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tessaly {

/// Bytes of the copy that are put at an offset, over what the source has there or behind it.
struct FilePatch {
  std::int64_t offset = 0;
  std::vector<std::byte> bytes;

  bool operator==(const FilePatch&) const = default;
};

/// A new directory with its values, as parts of a file.
struct DirectoryImage {
  std::vector<FilePatch> patches;  ///< the directory itself first
  std::vector<CopyRange> values;   ///< values of the source that move along
};

struct CopyPlan {
  std::int64_t length = 0;                 ///< of the whole copy
  std::optional<std::int64_t> rawSegment;  ///< where plain 16-bit samples are appended; absent in the source form
  std::int64_t rawDirectory = 0;           ///< where the directory that describes those is appended
  std::vector<CopyRange> values;           ///< values of the source that are appended again
  std::vector<FilePatch> patches;          ///< written last, in this order
};

/// `offset` or, when it is odd, the one behind it: appended blocks start on even offsets.
[[nodiscard]] constexpr std::int64_t evenOffset(std::int64_t offset) {
  return offset + offset % 2;
}

}  // namespace tessaly
