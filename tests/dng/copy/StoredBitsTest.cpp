#include "dng/copy/StoredBits.h"

#include <gtest/gtest.h>

#include <vector>

namespace tessaly {
namespace {

using Bytes = std::vector<std::byte>;

// Bit by bit.
Bytes copiedSlowly(const Bytes& from, Bytes to, std::int64_t first, std::int64_t end, bool reversed) {
  for (std::int64_t bit = first; bit < end; ++bit) {
    const auto byte = static_cast<std::size_t>(bit / 8);
    const std::byte mask = reversed ? std::byte{1} << (bit % 8) : std::byte{0x80} >> (bit % 8);
    to[byte] = (to[byte] & ~mask) | (from[byte] & mask);
  }
  return to;
}

TEST(StoredBits, AreCopiedAndNoOthers) {
  const Bytes from{std::byte{0xA5}, std::byte{0x3C}, std::byte{0xF0}, std::byte{0x5A}};
  const Bytes to{std::byte{0x5A}, std::byte{0xC3}, std::byte{0x0F}, std::byte{0xA5}};
  for (const bool reversed : {false, true}) {
    for (std::int64_t first = 0; first <= 32; ++first) {
      for (std::int64_t end = first; end <= 32; ++end) {
        Bytes copied = to;
        copyBits(from, copied, first, end, reversed);
        EXPECT_EQ(copied, copiedSlowly(from, to, first, end, reversed)) << first << " to " << end;
      }
    }
  }
}

}  // namespace
}  // namespace tessaly
