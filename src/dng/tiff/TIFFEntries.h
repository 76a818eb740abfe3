// The entry block of one image file directory. The EXIF directory has the same form as the others but its own errors,
// so the limits are predicates here and the errors are the callers'.
//
// Stateless.
#pragma once

#include "dng/tiff/TIFFBytes.h"
#include "dng/tiff/TIFFDirectory.h"

#include <cstdint>
#include <functional>

namespace tessaly {

/// The most entries that a directory may have.
inline constexpr std::int64_t maximumEntries = 4096;

/// The entries of a directory and the next-directory word behind them.
[[nodiscard]] constexpr std::int64_t entryBlockSize(std::int64_t entries) {
  return 12 * entries + 4;
}

/// Whether the type is one of classic TIFF and the count is at most 16,777,216. Only then the size is meaningful.
[[nodiscard]] bool hasKnownTypeAndCount(const TIFFField& field);

/// Reads `count` entries (at most maximumEntries) behind the entry count at `offset` and visits them in order. The
/// block is range-checked first; the entries are as they stand in the file, neither limited nor range-checked.
void forEachEntry(const TIFFBytes& bytes, std::int64_t offset, std::int64_t count,
                  const std::function<void(const TIFFField&)>& visit);

}  // namespace tessaly
