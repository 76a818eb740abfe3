#include "dng/samples/RawPixelCodec.h"

#include "dng/DNGError.h"
#include "dng/samples/BitDepth.h"
#include "dng/samples/SampleFormat.h"
#include "dng/samples/SamplePacker.h"
#include "dng/samples/SampleUnpacker.h"

#include <fmt/format.h>

namespace tessaly::RawPixelCodec {
namespace {

constexpr int bitsOf(RawPacking packing) {
  return packing == RawPacking::packed12MSB ? 12 : 16;
}

static_assert(isSupportedBitDepth(bitsOf(RawPacking::packed12MSB)) &&
              isSupportedBitDepth(bitsOf(RawPacking::littleEndian16)));

SampleFormat formatOf(RawPacking packing) {
  return {bitsOf(packing), true, false};
}

std::int64_t byteCount12(std::int64_t pixelCount) {
  std::int64_t bits = 0;
  const bool overflows = __builtin_mul_overflow(pixelCount, 12, &bits) || __builtin_add_overflow(bits, 7, &bits);
  if (overflows) throw DNGError::invalid("12-bit raw pixel length overflow");
  return bits / 8;
}

std::int64_t byteCount16(std::int64_t pixelCount) {
  std::int64_t bytes = 0;
  if (__builtin_mul_overflow(pixelCount, 2, &bytes)) throw DNGError::invalid("Raw pixel length overflow");
  return bytes;
}

}  // namespace

std::int64_t expectedByteCount(std::int64_t pixelCount, RawPacking packing) {
  if (pixelCount < 0) throw DNGError::invalid("Negative raw pixel count");
  return packing == RawPacking::packed12MSB ? byteCount12(pixelCount) : byteCount16(pixelCount);
}

RawSamples decode(std::span<const std::byte> data, std::int64_t pixelCount, RawPacking packing) {
  const std::int64_t expected = expectedByteCount(pixelCount, packing);
  if (static_cast<std::int64_t>(data.size()) != expected) {
    throw DNGError::truncated(fmt::format("Expected {} raw-strip bytes, found {}", expected, data.size()));
  }
  RawSamples samples(static_cast<std::size_t>(pixelCount));
  unpackSamples(formatOf(packing), data, samples);
  return samples;
}

std::vector<std::byte> encode(std::span<const std::uint16_t> samples, RawPacking packing) {
  const std::int64_t length = expectedByteCount(static_cast<std::int64_t>(samples.size()), packing);
  const SampleFormat format = formatOf(packing);
  if (!fitsDepth(format, samples)) throw DNGError::invalid("A 12-bit raw sample exceeds 4095");
  std::vector<std::byte> data(static_cast<std::size_t>(length));
  packSamples(format, samples, data);
  return data;
}

}  // namespace tessaly::RawPixelCodec
