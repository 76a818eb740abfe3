// Packs a flat array of samples into one contiguous block of bytes, without rows, and unpacks it: the two packings
// named by RawPacking. Images as cameras store them, row after row, are the business of SampleUnpacker and
// SamplePacker; this codec reads blocks of records that carry no source encoding. Encoding is for programs that the
// engine is linked into and write such blocks.
//
// Stateless; safe from several threads.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/RawPlane.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessaly::RawPixelCodec {

/// The length in bytes of `pixelCount` packed samples. Throws invalid for a negative count or a length beyond 64 bits.
[[nodiscard]] std::int64_t expectedByteCount(std::int64_t pixelCount, RawPacking packing);

/// Throws truncated("Expected <expected> raw-strip bytes, found <actual>") unless `data` has exactly the expected
/// length: a longer block is refused too.
[[nodiscard]] RawSamples decode(std::span<const std::byte> data, std::int64_t pixelCount, RawPacking packing);

/// Throws invalid("A 12-bit raw sample exceeds 4095") before anything is packed.
[[nodiscard]] std::vector<std::byte> encode(std::span<const std::uint16_t> samples, RawPacking packing);

}  // namespace tessaly::RawPixelCodec
