// 64 bits of a bit string that begins with the most significant bit of its first byte, in registers.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tessaly {

// g++ 12 has no std::byteswap; both compilers make one instruction of this.
[[nodiscard]] constexpr std::uint64_t swappedBytes(std::uint64_t value) {
  return __builtin_bswap64(value);
}

[[nodiscard]] constexpr std::uint64_t asBigEndian(std::uint64_t value) {
  return std::endian::native == std::endian::big ? value : swappedBytes(value);
}

[[nodiscard]] inline std::uint64_t loadBigEndian64(const std::byte* from) {
  std::uint64_t value = 0;
  std::memcpy(&value, from, sizeof value);
  return asBigEndian(value);
}

inline void storeBigEndian64(std::byte* to, std::uint64_t value) {
  const std::uint64_t bytes = asBigEndian(value);
  std::memcpy(to, &bytes, sizeof bytes);
}

}  // namespace tessaly
