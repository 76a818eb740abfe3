// The kinds of colour mosaic that the sensors of readable files have. Whoever looks at samples by their colours asks in
// a switch without a default: a kind added here does not compile before every one of them knows it.
#pragma once

#include "dng/DNGMetadata.h"

#include <cstdint>

namespace tessaly {

enum class MosaicKind : std::uint8_t { none, bayer };

[[nodiscard]] inline MosaicKind mosaicKindOf(const DNGMetadata& metadata) {
  return metadata.cfaLayout ? MosaicKind::bayer : MosaicKind::none;
}

}  // namespace tessaly
