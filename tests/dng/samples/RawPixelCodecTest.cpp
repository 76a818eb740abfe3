#include "dng/metadata/Refusal.h"
#include "dng/samples/RawPixelCodec.h"
#include "support/FileBytes.h"

#include <gtest/gtest.h>

namespace tessaly::tests {
namespace {

using Samples = std::vector<std::uint16_t>;

constexpr RawPacking packed = RawPacking::packed12MSB;
constexpr RawPacking words = RawPacking::littleEndian16;
constexpr std::int64_t largest = INT64_MAX;

Samples decoded(const std::vector<std::byte>& data, std::int64_t count, RawPacking packing) {
  const RawSamples samples = RawPixelCodec::decode(data, count, packing);
  return {samples.begin(), samples.end()};
}

std::vector<std::byte> encoded(const Samples& samples, RawPacking packing) {
  return RawPixelCodec::encode(samples, packing);
}

TEST(RawPixelCodec, MeasuresBothPackings) {
  EXPECT_EQ(RawPixelCodec::expectedByteCount(0, packed), 0);
  EXPECT_EQ(RawPixelCodec::expectedByteCount(1, packed), 2);
  EXPECT_EQ(RawPixelCodec::expectedByteCount(2, packed), 3);
  EXPECT_EQ(RawPixelCodec::expectedByteCount(3, packed), 5);
  EXPECT_EQ(RawPixelCodec::expectedByteCount(0, words), 0);
  EXPECT_EQ(RawPixelCodec::expectedByteCount(3, words), 6);
}

TEST(RawPixelCodec, RejectsANegativeCount) {
  for (const RawPacking packing : {packed, words}) {
    EXPECT_EQ(refusalOf([&] { return RawPixelCodec::expectedByteCount(-1, packing); }),
              "Invalid DNG structure: Negative raw pixel count");
  }
}

TEST(RawPixelCodec, RejectsALengthBeyond64Bits) {
  EXPECT_EQ(RawPixelCodec::expectedByteCount(largest / 2, words), largest - 1);
  EXPECT_EQ(refusalOf([&] { return RawPixelCodec::expectedByteCount(largest / 2 + 1, words); }),
            "Invalid DNG structure: Raw pixel length overflow");
  const std::int64_t largestPacked = (largest - 7) / 12;
  EXPECT_EQ(RawPixelCodec::expectedByteCount(largestPacked, packed), (12 * largestPacked + 7) / 8);
  EXPECT_EQ(refusalOf([&] { return RawPixelCodec::expectedByteCount(largestPacked + 1, packed); }),
            "Invalid DNG structure: 12-bit raw pixel length overflow");
  EXPECT_EQ(refusalOf([&] { return RawPixelCodec::expectedByteCount(largest, packed); }),
            "Invalid DNG structure: 12-bit raw pixel length overflow");
}

TEST(RawPixelCodec, PacksNothingIntoNothing) {
  for (const RawPacking packing : {packed, words}) {
    EXPECT_EQ(encoded({}, packing), bytesOf({}));
    EXPECT_EQ(decoded({}, 0, packing), Samples{});
  }
}

TEST(RawPixelCodec, PacksTwoSamplesIntoThreeBytes) {
  EXPECT_EQ(encoded({0xABC, 0x123}, packed), bytesOf({0xAB, 0xC1, 0x23}));
  EXPECT_EQ(decoded(bytesOf({0xAB, 0xC1, 0x23}), 2, packed), (Samples{0xABC, 0x123}));
}

TEST(RawPixelCodec, EndsAnOddSampleWithAZeroNibble) {
  EXPECT_EQ(encoded({0xABC, 0x123, 0xDEF}, packed), bytesOf({0xAB, 0xC1, 0x23, 0xDE, 0xF0}));
  EXPECT_EQ(decoded(bytesOf({0xAB, 0xC1, 0x23, 0xDE, 0xF7}), 3, packed), (Samples{0xABC, 0x123, 0xDEF}));
  EXPECT_EQ(encoded({0xDEF}, packed), bytesOf({0xDE, 0xF0}));
}

TEST(RawPixelCodec, PutsTheLowByteFirst) {
  EXPECT_EQ(encoded({4096, 0x1234}, words), bytesOf({0x00, 0x10, 0x34, 0x12}));
  EXPECT_EQ(decoded(bytesOf({0x00, 0x10, 0x34, 0x12}), 2, words), (Samples{4096, 0x1234}));
}

TEST(RawPixelCodec, RejectsASampleOfMoreThan12Bits) {
  EXPECT_EQ(encoded({4095}, packed), bytesOf({0xFF, 0xF0}));
  EXPECT_EQ(refusalOf([] {
              return encoded({0, 4096, 0}, packed);
            }),
            "Invalid DNG structure: A 12-bit raw sample exceeds 4095");
}

TEST(RawPixelCodec, RequiresExactlyTheExpectedBytes) {
  const std::vector<std::byte> eleven(11);
  EXPECT_EQ(refusalOf([&] { return decoded(eleven, 4, words); }),
            "Incomplete DNG file: Expected 8 raw-strip bytes, found 11");
  EXPECT_EQ(refusalOf([&] { return decoded(eleven, 8, packed); }),
            "Incomplete DNG file: Expected 12 raw-strip bytes, found 11");
}

TEST(RawPixelCodec, RejectsAHugeCountWithoutAllocating) {
  EXPECT_EQ(refusalOf([&] { return decoded({}, largest / 2, words); }),
            "Incomplete DNG file: Expected 9223372036854775806 raw-strip bytes, found 0");
}

TEST(RawPixelCodec, GivesBackWhatItPacked) {
  for (std::size_t count = 0; count < 70; ++count) {
    Samples samples(count);
    for (std::size_t i = 0; i < count; ++i)
      samples[i] = static_cast<std::uint16_t>((i * 2731 + 17) % 4096);
    for (const RawPacking packing : {packed, words}) {
      EXPECT_EQ(decoded(encoded(samples, packing), static_cast<std::int64_t>(count), packing), samples);
    }
  }
}

}  // namespace
}  // namespace tessaly::tests
