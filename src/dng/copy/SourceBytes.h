// Copies bytes of a source into a new file, unchanged.
#pragma once

#include "dng/copy/SourceImage.h"
#include "platform/PartialFile.h"

#include <cstddef>
#include <span>

namespace tessaly {

/// Throws truncated("TIFF field at <offset>, length <length>") when the source has become shorter since it was opened.
void copySourceBytes(PartialFile& file, const SourceImage& source, const CopyRange& range, std::span<std::byte> buffer);

}  // namespace tessaly
