#include "dng/samples/BitReversal.h"

#include <cassert>
#include <cstdint>
#include <cstring>

namespace tessaly {
namespace {

// Swaps neighbouring bits, then pairs, then halves, of eight bytes at a time.
std::uint64_t withReversedBytes(std::uint64_t bytes) {
  bytes = (bytes >> 1U & 0x5555555555555555U) | (bytes & 0x5555555555555555U) << 1U;
  bytes = (bytes >> 2U & 0x3333333333333333U) | (bytes & 0x3333333333333333U) << 2U;
  return (bytes >> 4U & 0x0F0F0F0F0F0F0F0FU) | (bytes & 0x0F0F0F0F0F0F0F0FU) << 4U;
}

void reverseUpToEight(const std::byte* from, std::byte* to, std::size_t count) {
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, from, count);
  bytes = withReversedBytes(bytes);
  std::memcpy(to, &bytes, count);
}

}  // namespace

void reverseBits(std::span<const std::byte> from, std::span<std::byte> to) {
  assert(to.size() >= from.size());
  constexpr std::size_t word = sizeof(std::uint64_t);
  const std::size_t wholeWords = from.size() / word * word;
  for (std::size_t i = 0; i < wholeWords; i += word)
    reverseUpToEight(from.data() + i, to.data() + i, word);
  reverseUpToEight(from.data() + wholeWords, to.data() + wholeWords, from.size() - wholeWords);
}

}  // namespace tessaly
