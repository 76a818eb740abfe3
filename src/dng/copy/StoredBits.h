// Stretches of the bit string that a stored row is.
//
// Stateless.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tessaly {

/// Copies the bits `first` up to, but not including, `end` of one row into another, and no other bit. Bit 0 is the most
/// significant bit of the first byte or, with `reversed` (fill order 2), its least significant one.
void copyBits(std::span<const std::byte> from, std::span<std::byte> to, std::int64_t first, std::int64_t end,
              bool reversed);

}  // namespace tessaly
