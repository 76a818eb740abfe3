#include "dng/copy/StoredBits.h"

#include <algorithm>
#include <cassert>

namespace tessaly {
namespace {

// The bits `first` up to `end` (0 to 8) of a byte.
std::byte bitsOfByte(std::int64_t first, std::int64_t end, bool reversed) {
  const unsigned beforeEnd = reversed ? 0xFFU >> (8 - end) : 0xFF00U >> end;
  const unsigned fromFirst = reversed ? 0xFFU << first : 0xFFU >> first;
  return std::byte(beforeEnd & fromFirst & 0xFFU);
}

}  // namespace

void copyBits(std::span<const std::byte> from, std::span<std::byte> to, std::int64_t first, std::int64_t end,
              bool reversed) {
  assert(first >= 0 && end <= 8 * std::ssize(from) && end <= 8 * std::ssize(to));
  for (std::int64_t bit = first; bit < end;) {
    const auto byte = static_cast<std::size_t>(bit / 8);
    const std::int64_t whole = (end - bit) / 8;
    if (bit % 8 == 0 && whole > 0) {
      std::copy_n(from.begin() + bit / 8, whole, to.begin() + bit / 8);
      bit += 8 * whole;
      continue;
    }
    const std::byte mask = bitsOfByte(bit % 8, std::min<std::int64_t>(end - bit / 8 * 8, 8), reversed);
    to[byte] = (to[byte] & ~mask) | (from[byte] & mask);
    bit = 8 * (bit / 8 + 1);
  }
}

}  // namespace tessaly
