// The order of bits within bytes, turned around: fill order 2 to fill order 1 and back.
//
// Stateless.
#pragma once

#include <cstddef>
#include <span>

namespace tessaly {

/// Writes each byte of `from` with its bits reversed to `to`, which has at least as many bytes and may be `from`.
void reverseBits(std::span<const std::byte> from, std::span<std::byte> to);

}  // namespace tessaly
