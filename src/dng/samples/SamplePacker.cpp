#include "dng/samples/SamplePacker.h"

#include "dng/samples/BigEndian.h"
#include "dng/samples/BitDepth.h"
#include "dng/samples/BitReversal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cstring>

namespace tessaly {
namespace {

constexpr std::size_t packedTogether = SampleFormat::samplesPerGroup;
constexpr std::size_t storeSize = sizeof(std::uint64_t);

// Four samples as the first bits of a string of bits; zeros behind them.
template <unsigned Bits>
std::uint64_t packGroup(const std::uint16_t* samples) {
  static_assert(fillsWholeBytesInGroups<Bits>);
  return static_cast<std::uint64_t>(samples[0]) << (64 - Bits) |
         static_cast<std::uint64_t>(samples[1]) << (64 - 2 * Bits) |
         static_cast<std::uint64_t>(samples[2]) << (64 - 3 * Bits) |
         static_cast<std::uint64_t>(samples[3]) << (64 - 4 * Bits);
}

// Writes the first `count` bits of `bits`, and none of the bits behind them.
void storeBits(std::uint64_t bits, std::size_t count, std::byte* to) {
  std::array<std::byte, storeSize> bytes{};
  storeBigEndian64(bytes.data(), bits);
  const std::size_t whole = count / 8;
  std::memcpy(to, bytes.data(), whole);
  if (count % 8 == 0) return;
  const auto padding = std::byte{0xFF} >> (count % 8);
  to[whole] = (to[whole] & padding) | (bytes[whole] & ~padding);
}

template <unsigned Bits>
void packTail(std::span<const std::uint16_t> samples, std::byte* bytes) {
  for (std::size_t i = 0; i < samples.size(); i += packedTogether) {
    const std::size_t count = std::min(packedTogether, samples.size() - i);
    std::array<std::uint16_t, packedTogether> group{};
    std::copy_n(samples.begin() + static_cast<std::ptrdiff_t>(i), count, group.begin());
    storeBits(packGroup<Bits>(group.data()), count * Bits, bytes + i / packedTogether * (Bits / 2));
  }
}

// An 8-byte store writes zeros behind its group, so only groups whose store ends within the samples may use one: the
// next group then covers the zeros.
template <unsigned Bits>
void packBits(std::span<const std::uint16_t> samples, std::span<std::byte> bytes) {
  const std::size_t wholeBytes = samples.size() * Bits / 8;
  const std::size_t groups = wholeBytes < storeSize ? 0 : (wholeBytes - storeSize) / (Bits / 2) + 1;
  const std::uint16_t* __restrict from = samples.data();
  std::byte* __restrict to = bytes.data();
  for (std::size_t g = 0; g < groups; ++g)
    storeBigEndian64(to + g * (Bits / 2), packGroup<Bits>(from + g * packedTogether));
  packTail<Bits>(samples.subspan(groups * packedTogether), to + groups * (Bits / 2));
}

void narrowBytes(std::span<const std::uint16_t> samples, std::span<std::byte> bytes) {
  std::transform(samples.begin(), samples.end(), bytes.begin(), [](std::uint16_t sample) { return std::byte(sample); });
}

void packWords(std::span<const std::uint16_t> samples, std::span<std::byte> bytes, bool littleEndian) {
  const bool native = littleEndian == (std::endian::native == std::endian::little);
  if (native) {
    std::memcpy(bytes.data(), samples.data(), samples.size_bytes());
    return;
  }
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const auto swapped = static_cast<std::uint16_t>(samples[i] << 8U | samples[i] >> 8U);
    std::memcpy(bytes.data() + 2 * i, &swapped, sizeof swapped);
  }
}

template <unsigned Bits>
void packForward(const SampleFormat& format, std::span<const std::uint16_t> samples, std::span<std::byte> bytes) {
  if constexpr (Bits == 8) {
    narrowBytes(samples, bytes);
  } else if constexpr (Bits == 16) {
    packWords(samples, bytes, format.littleEndian);
  } else {
    packBits<Bits>(samples, bytes);
  }
}

}  // namespace

void packSamples(const SampleFormat& format, std::span<const std::uint16_t> samples, std::span<std::byte> bytes) {
  withBitDepth(format.bits, [&](auto bits) {
    const auto length = static_cast<std::size_t>(format.byteCount(static_cast<std::int64_t>(samples.size())));
    assert(bytes.size() >= length);
    assert(fitsDepth(format, samples));
    if (samples.empty()) return;
    const std::span<std::byte> target = bytes.first(length);
    if (format.reversedBytes) reverseBits(target, target);  // the padding bits too, which come back below
    packForward<bits>(format, samples, target);
    if (format.reversedBytes) reverseBits(target, target);
  });
}

bool fitsDepth(const SampleFormat& format, std::span<const std::uint16_t> samples) {
  requireSupportedBitDepth(format.bits);
  unsigned all = 0;
  for (const std::uint16_t sample : samples)
    all |= sample;
  return all >> format.bits == 0;
}

}  // namespace tessaly
