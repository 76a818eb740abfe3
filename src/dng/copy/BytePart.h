// A part of a buffer by the signed offsets and lengths that files are described in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tessaly {

/// The `length` bytes from `offset`, which lie inside `bytes`.
inline std::span<std::byte> part(std::span<std::byte> bytes, std::int64_t offset, std::int64_t length) {
  return bytes.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(length));
}

}  // namespace tessaly
