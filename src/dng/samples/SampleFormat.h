// How the samples of one stored row become bytes: depth, byte order, fill order.
//
// A row is a string of bits. 8, 10, 12 and 14-bit samples follow each other in it without gaps, each most significant
// bit first; the byte order of the file plays no part. 16-bit samples are two bytes in the file's byte order. With fill
// order 2 the bits of every byte are stored in reverse. Four samples of any depth fill whole bytes (4, 5, 6, 7 or 8 of
// them), so every fourth column starts on a byte boundary: such a column is called a group boundary.
#pragma once

#include "dng/DNGMetadata.h"

#include <bit>
#include <cassert>
#include <cstdint>

namespace tessaly {

/// Whether four samples of this depth fill whole bytes and fit into 64 bits, which packing and unpacking build on.
template <unsigned Bits>
inline constexpr bool fillsWholeBytesInGroups = Bits % 2 == 0 && Bits <= 16;

struct SampleFormat {
  /// The number of samples in a group: column g × samplesPerGroup starts at byte g × bytesPerGroup() of its row.
  static constexpr std::int64_t samplesPerGroup = 4;

  int bits = 16;               ///< one of supportedBitDepths
  bool littleEndian = true;    ///< counts for 16 bits only
  bool reversedBytes = false;  ///< fill order 2

  /// The format of a record that has a source encoding.
  [[nodiscard]] static SampleFormat of(const DNGMetadata& metadata) {
    assert(metadata.sourceEncoding);
    return {static_cast<int>(metadata.bitsPerSample), metadata.sourceEncoding->littleEndian,
            metadata.sourceEncoding->fillOrder == 2};
  }

  [[nodiscard]] std::int64_t bytesPerGroup() const { return bits / 2; }

  /// Whether stored samples are samples in memory, byte for byte.
  [[nodiscard]] bool isNative() const {
    return bits == 16 && littleEndian && !reversedBytes && std::endian::native == std::endian::little;
  }

  /// The bytes that hold `count` samples from a group boundary on; the last one may hold padding bits too.
  [[nodiscard]] std::int64_t byteCount(std::int64_t count) const { return (count * bits + 7) / 8; }

  bool operator==(const SampleFormat&) const = default;
};

}  // namespace tessaly
