#include "dng/samples/SampleUnpacker.h"

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

constexpr std::size_t unpackedTogether = SampleFormat::samplesPerGroup;
constexpr std::size_t loadSize = sizeof(std::uint64_t);

// The first four samples of a string of bits.
template <unsigned Bits>
void unpackGroup(std::uint64_t bits, std::uint16_t* samples) {
  static_assert(fillsWholeBytesInGroups<Bits>);
  constexpr std::uint64_t mask = (1U << Bits) - 1;
  samples[0] = static_cast<std::uint16_t>(bits >> (64 - Bits));
  samples[1] = static_cast<std::uint16_t>(bits >> (64 - 2 * Bits) & mask);
  samples[2] = static_cast<std::uint16_t>(bits >> (64 - 3 * Bits) & mask);
  samples[3] = static_cast<std::uint16_t>(bits >> (64 - 4 * Bits) & mask);
}

// The last groups of a row: an 8-byte load would reach beyond the row there.
template <unsigned Bits>
void unpackTail(std::span<const std::byte> bytes, std::span<std::uint16_t> samples) {
  for (std::size_t i = 0; i < samples.size(); i += unpackedTogether) {
    const auto rest = bytes.subspan(i / unpackedTogether * (Bits / 2));
    std::array<std::byte, loadSize> padded{};
    std::memcpy(padded.data(), rest.data(), std::min(rest.size(), loadSize));
    std::array<std::uint16_t, unpackedTogether> group{};
    unpackGroup<Bits>(loadBigEndian64(padded.data()), group.data());
    std::copy_n(group.begin(), std::min(unpackedTogether, samples.size() - i),
                samples.begin() + static_cast<std::ptrdiff_t>(i));
  }
}

// Number of groups whose 8-byte load stays within the bytes.
template <unsigned Bits>
std::size_t loadableGroups(std::size_t bytes, std::size_t samples) {
  const std::size_t loads = bytes < loadSize ? 0 : (bytes - loadSize) / (Bits / 2) + 1;
  return std::min(loads, samples / unpackedTogether);
}

template <unsigned Bits>
void unpackBits(std::span<const std::byte> bytes, std::span<std::uint16_t> samples) {
  const std::size_t groups = loadableGroups<Bits>(bytes.size(), samples.size());
  const std::byte* __restrict from = bytes.data();
  std::uint16_t* __restrict to = samples.data();
  for (std::size_t g = 0; g < groups; ++g)
    unpackGroup<Bits>(loadBigEndian64(from + g * (Bits / 2)), to + g * unpackedTogether);
  unpackTail<Bits>(bytes.subspan(groups * (Bits / 2)), samples.subspan(groups * unpackedTogether));
}

void widenBytes(std::span<const std::byte> bytes, std::span<std::uint16_t> samples) {
  std::transform(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(samples.size()), samples.begin(),
                 [](std::byte value) { return std::to_integer<std::uint16_t>(value); });
}

void unpackWords(std::span<const std::byte> bytes, std::span<std::uint16_t> samples, bool littleEndian) {
  std::memcpy(samples.data(), bytes.data(), samples.size_bytes());
  const bool native = littleEndian == (std::endian::native == std::endian::little);
  if (native) return;
  for (std::uint16_t& sample : samples)
    sample = static_cast<std::uint16_t>(sample << 8U | sample >> 8U);
}

template <unsigned Bits>
void unpackForward(const SampleFormat& format, std::span<const std::byte> bytes, std::span<std::uint16_t> samples) {
  if constexpr (Bits == 8) {
    widenBytes(bytes, samples);
  } else if constexpr (Bits == 16) {
    unpackWords(bytes, samples, format.littleEndian);
  } else {
    unpackBits<Bits>(bytes, samples);
  }
}

// Turning bytes around first costs less than a second kernel: 16 of them at a time, in a block that stays in the cache.
template <unsigned Bits>
void unpackReversed(const SampleFormat& format, std::span<const std::byte> bytes, std::span<std::uint16_t> samples) {
  constexpr std::size_t blockSamples = 1024;
  std::array<std::byte, blockSamples * sizeof(std::uint16_t)> block;  // left uninitialised: filled before it is read
  for (std::size_t done = 0; done < samples.size(); done += blockSamples) {
    const auto part = samples.subspan(done, std::min(blockSamples, samples.size() - done));
    const auto start = static_cast<std::size_t>(format.byteCount(static_cast<std::int64_t>(done)));
    const auto length = static_cast<std::size_t>(format.byteCount(static_cast<std::int64_t>(part.size())));
    reverseBits(bytes.subspan(start, length), block);
    unpackForward<Bits>(format, std::span(block).first(length), part);
  }
}

}  // namespace

void unpackSamples(const SampleFormat& format, std::span<const std::byte> bytes, std::span<std::uint16_t> samples) {
  withBitDepth(format.bits, [&](auto bits) {
    assert(static_cast<std::int64_t>(bytes.size()) >= format.byteCount(static_cast<std::int64_t>(samples.size())));
    if (samples.empty()) return;
    if (format.reversedBytes) return unpackReversed<bits>(format, bytes, samples);
    unpackForward<bits>(format, bytes, samples);
  });
}

}  // namespace tessaly
