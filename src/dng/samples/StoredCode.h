// One code among stored bytes, read or replaced by its place in the string of bits that a file is, without the others
// of its group.
//
// `bit` counts from the start of `bytes`, eight a byte, from a byte boundary where the row of the sample starts. Only
// the bytes that hold a bit of the code are touched. Stateless; safe from several threads for different bytes.
#pragma once

#include "dng/samples/SampleFormat.h"

#include <cstddef>
#include <cstdint>

namespace tessaly {

/// Where a code of `bits` bits lies in the bytes that hold it, read as one number, most significant byte first.
struct CodePlace {
  std::int64_t firstByte = 0;
  int bytes = 0;
  int shift = 0;  ///< of the code's last bit

  CodePlace(std::int64_t bit, int bits)
      : firstByte(bit / 8),
        bytes((static_cast<int>(bit % 8) + bits + 7) / 8),
        shift(8 * bytes - static_cast<int>(bit % 8) - bits) {}
};

[[nodiscard]] constexpr unsigned withReversedBits(unsigned byte) {
  byte = (byte >> 1U & 0x55U) | (byte & 0x55U) << 1U;
  byte = (byte >> 2U & 0x33U) | (byte & 0x33U) << 2U;
  return byte >> 4U | (byte & 0x0FU) << 4U;
}

[[nodiscard]] constexpr std::uint16_t withSwappedBytes(std::uint16_t code) {
  return static_cast<std::uint16_t>(code << 8U | code >> 8U);
}

/// 16-bit codes are the only ones that the byte order of the file turns around.
[[nodiscard]] constexpr bool swapsBytes(const SampleFormat& format) {
  return format.bits == 16 && format.littleEndian;
}

[[nodiscard]] inline std::uint16_t loadCode(const SampleFormat& format, const std::byte* bytes, std::int64_t bit) {
  const CodePlace place(bit, format.bits);
  unsigned value = 0;
  for (int i = 0; i < place.bytes; ++i) {
    const auto byte = std::to_integer<unsigned>(bytes[place.firstByte + i]);
    value = value << 8U | (format.reversedBytes ? withReversedBits(byte) : byte);
  }
  const auto code = static_cast<std::uint16_t>(value >> place.shift & ((1U << format.bits) - 1U));
  return swapsBytes(format) ? withSwappedBytes(code) : code;
}

/// Exactly the bits of the code are replaced, which must fit the depth.
inline void storeCode(const SampleFormat& format, std::byte* bytes, std::int64_t bit, std::uint16_t code) {
  const CodePlace place(bit, format.bits);
  const unsigned value = unsigned{swapsBytes(format) ? withSwappedBytes(code) : code} << place.shift;
  const unsigned mask = ((1U << format.bits) - 1U) << place.shift;
  for (int i = 0; i < place.bytes; ++i) {
    const int down = 8 * (place.bytes - 1 - i);
    const unsigned newBits = value >> down & 0xFFU, newMask = mask >> down & 0xFFU;
    const auto put = std::byte(format.reversedBytes ? withReversedBits(newBits) : newBits);
    const auto keep = ~std::byte(format.reversedBytes ? withReversedBits(newMask) : newMask);
    std::byte& byte = bytes[place.firstByte + i];
    byte = (byte & keep) | put;
  }
}

}  // namespace tessaly
