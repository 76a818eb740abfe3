// The strips or tiles of an image by their place in the file, which need not be their place in the image.
//
// Stateless.
#pragma once

#include "dng/DNGMetadata.h"

#include <cstdint>
#include <vector>

namespace tessaly {

/// The indices of all segments by rising offset, of equal ones by index.
[[nodiscard]] std::vector<std::int64_t> segmentsInFileOrder(const DNGSourceEncoding& encoding);

/// Whether the stored rows of two segments have a byte in common, as only a damaged file has it. A sample that is
/// written may then change another one.
[[nodiscard]] bool segmentsShareBytes(const DNGMetadata& metadata);

}  // namespace tessaly
