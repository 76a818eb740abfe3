// The raw directory of a copy whose raw image is stored as one strip of plain 16-bit samples.
#pragma once

#include "dng/copy/DirectoryBuilder.h"
#include "dng/copy/SourceImage.h"

#include <cstdint>

namespace tessaly {

/// The source's raw directory with the entries that say how samples are stored replaced, those that no longer hold
/// (tiles, table, digests of the old samples) dropped and all others carried over with their values. A source without
/// WhiteLevel gets one: without the table its default would be 65,535, and the copy would be rendered too dark.
[[nodiscard]] DirectoryBuilder reencodedDirectory(const SourceImage& source, std::int64_t rawSegment);

}  // namespace tessaly
