// unpackSamples and packSamples, every depth, byte order, fill order and length.
#include "dng/metadata/Refusal.h"
#include "dng/samples/SamplePacker.h"
#include "dng/samples/SampleUnpacker.h"
#include "support/FileBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

namespace tessaly::tests {
namespace {

using Samples = std::vector<std::uint16_t>;
using Bytes = std::vector<std::byte>;

constexpr SampleFormat le16{16, true, false};
constexpr SampleFormat be16{16, false, false};

Samples unpacked(const SampleFormat& format, const Bytes& bytes, std::size_t count) {
  // An allocation of exactly the bytes, so that the address sanitizer sees any read beyond them.
  const auto exact = std::make_unique<std::byte[]>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), exact.get());
  Samples samples(count);
  unpackSamples(format, {exact.get(), bytes.size()}, samples);
  return samples;
}

Bytes packedInto(const SampleFormat& format, const Samples& samples, Bytes bytes) {
  packSamples(format, samples, bytes);
  return bytes;
}

Bytes packedBytes(const SampleFormat& format, const Samples& samples) {
  const auto length = static_cast<std::size_t>(format.byteCount(static_cast<std::int64_t>(samples.size())));
  return packedInto(format, samples, Bytes(length));
}

// ---- Layouts written out by hand

TEST(UnpackSamples, Reads16BitsInTheByteOrderOfTheFile) {
  EXPECT_EQ(unpacked(le16, bytesOf({0x34, 0x12}), 1), Samples{0x1234});
  EXPECT_EQ(unpacked(be16, bytesOf({0x34, 0x12}), 1), Samples{13'330});
}

TEST(UnpackSamples, ReversesTheBitsOfEachByteOf16) {
  EXPECT_EQ(unpacked({16, true, true}, bytesOf({0x2C, 0x48}), 1), Samples{0x1234});
  EXPECT_EQ(unpacked({16, false, true}, bytesOf({0x48, 0x2C}), 1), Samples{0x1234});
}

TEST(UnpackSamples, Reads8Bits) {
  EXPECT_EQ(unpacked({8, true, false}, bytesOf({0x01, 0x80, 0xFF}), 3), (Samples{1, 128, 255}));
  EXPECT_EQ(unpacked({8, true, true}, bytesOf({0x01, 0x80, 0xFF}), 3), (Samples{128, 1, 255}));
}

// 0000000001 0000000010 0000000011 0000000100
TEST(UnpackSamples, Reads10BitsMostSignificantFirst) {
  EXPECT_EQ(unpacked({10, true, false}, bytesOf({0x00, 0x40, 0x20, 0x0C, 0x04}), 4), (Samples{1, 2, 3, 4}));
  EXPECT_EQ(unpacked({10, true, false}, bytesOf({0xFF, 0xC0, 0x00}), 2), (Samples{1023, 0}));
}

TEST(UnpackSamples, Reads12BitsMostSignificantFirst) {
  EXPECT_EQ(unpacked({12, false, false}, bytesOf({0xAB, 0xC1, 0x23}), 2), (Samples{0xABC, 0x123}));
}

// 00000000000001 00000000000010 00000000000011 00000000000100
TEST(UnpackSamples, Reads14BitsMostSignificantFirst) {
  EXPECT_EQ(unpacked({14, false, false}, bytesOf({0x00, 0x04, 0x00, 0x20, 0x00, 0xC0, 0x04}), 4),
            (Samples{1, 2, 3, 4}));
}

TEST(UnpackSamples, StartsWithTheLowestBitInFillOrder2) {
  EXPECT_EQ(unpacked({12, true, true}, bytesOf({0xD5, 0x83, 0xC4}), 2), (Samples{0xABC, 0x123}));
}

TEST(PackSamples, WritesTheSameBytes) {
  EXPECT_EQ(packedBytes(le16, {0x1234}), bytesOf({0x34, 0x12}));
  EXPECT_EQ(packedBytes(be16, {0x1234}), bytesOf({0x12, 0x34}));
  EXPECT_EQ(packedBytes({16, true, true}, {0x1234}), bytesOf({0x2C, 0x48}));
  EXPECT_EQ(packedBytes({8, true, true}, {128, 1}), bytesOf({0x01, 0x80}));
  EXPECT_EQ(packedBytes({10, true, false}, {1, 2, 3, 4}), bytesOf({0x00, 0x40, 0x20, 0x0C, 0x04}));
  EXPECT_EQ(packedBytes({12, true, false}, {0xABC, 0x123}), bytesOf({0xAB, 0xC1, 0x23}));
  EXPECT_EQ(packedBytes({12, true, true}, {0xABC, 0x123}), bytesOf({0xD5, 0x83, 0xC4}));
  EXPECT_EQ(packedBytes({14, true, false}, {1, 2, 3, 4}), bytesOf({0x00, 0x04, 0x00, 0x20, 0x00, 0xC0, 0x04}));
}

TEST(PackSamples, LeavesThePaddingBitsAlone) {
  EXPECT_EQ(packedInto({10, true, false}, {0}, bytesOf({0xFF, 0xFF})), bytesOf({0x00, 0x3F}));
  EXPECT_EQ(packedInto({12, true, false}, {0x000}, bytesOf({0xFF, 0xFF})), bytesOf({0x00, 0x0F}));
  EXPECT_EQ(packedInto({12, true, true}, {0x000}, bytesOf({0xFF, 0xFF})), bytesOf({0x00, 0xF0}));
  EXPECT_EQ(packedInto({14, true, false}, {0, 0, 0}, Bytes(6, std::byte{0xFF})),
            bytesOf({0x00, 0x00, 0x00, 0x00, 0x00, 0x3F}));
  EXPECT_EQ(packedInto({10, true, false}, {1023}, bytesOf({0x00, 0x00})), bytesOf({0xFF, 0xC0}));
}

TEST(PackSamples, LeavesLaterBytesAlone) {
  for (const int bits : {8, 10, 12, 14, 16}) {
    for (std::size_t count = 0; count < 24; ++count) {
      const SampleFormat format{bits, true, false};
      const auto length = static_cast<std::size_t>(format.byteCount(static_cast<std::int64_t>(count)));
      const Bytes bytes = packedInto(format, Samples(count, 0), Bytes(length + 16, std::byte{0xA5}));
      EXPECT_TRUE(std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(length), bytes.end(),
                              [](std::byte value) { return value == std::byte{0xA5}; }))
          << bits << " bits, " << count << " samples";
    }
  }
}

TEST(FitsDepth, ComparesEverySample) {
  for (const int bits : {8, 10, 12, 14}) {
    const auto limit = static_cast<std::uint16_t>(1U << static_cast<unsigned>(bits));
    const SampleFormat format{bits, true, false};
    EXPECT_TRUE(fitsDepth(format, Samples{0, static_cast<std::uint16_t>(limit - 1)}));
    EXPECT_FALSE(fitsDepth(format, Samples{0, limit, 0}));
  }
  EXPECT_TRUE(fitsDepth(le16, Samples{65535}));
  EXPECT_TRUE(fitsDepth({8, true, false}, Samples{}));
}

// ---- All of them against bit by bit

class AnyFormat : public testing::TestWithParam<std::tuple<int, bool, bool>> {
 protected:
  [[nodiscard]] static SampleFormat format() {
    return {std::get<0>(GetParam()), std::get<1>(GetParam()), std::get<2>(GetParam())};
  }

  [[nodiscard]] Bytes randomBytes(std::size_t count) {
    Bytes bytes(count);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<std::byte>(random_()); });
    return bytes;
  }

  std::mt19937 random_{7};
};

bool bitAt(const SampleFormat& format, const Bytes& bytes, std::size_t bit) {
  const auto value = std::to_integer<unsigned>(bytes[bit / 8]);
  const std::size_t k = bit % 8;
  return (value >> (format.reversedBytes ? k : 7 - k) & 1U) != 0;
}

std::uint16_t naiveSample(const SampleFormat& format, const Bytes& bytes, std::size_t column) {
  const auto bits = static_cast<std::size_t>(format.bits);
  unsigned value = 0;
  for (std::size_t bit = 0; bit < bits; ++bit)
    value = value * 2 + bitAt(format, bytes, column * bits + bit);
  if (format.bits == 16 && format.littleEndian) value = value % 256 * 256 + value / 256;
  return static_cast<std::uint16_t>(value);
}

std::vector<std::size_t> lengths() {
  std::vector<std::size_t> all;
  for (std::size_t count = 0; count < 40; ++count)
    all.push_back(count);
  for (const std::size_t count : {1021U, 1023U, 1024U, 1025U, 2047U, 2048U, 2051U, 3001U})
    all.push_back(count);
  return all;
}

TEST_P(AnyFormat, IsUnpackedAsBitByBit) {
  for (const std::size_t count : lengths()) {
    const Bytes bytes = randomBytes(static_cast<std::size_t>(format().byteCount(static_cast<std::int64_t>(count))));
    const Samples samples = unpacked(format(), bytes, count);
    for (std::size_t i = 0; i < count; ++i) {
      ASSERT_EQ(samples[i], naiveSample(format(), bytes, i)) << "sample " << i << " of " << count;
    }
  }
}

TEST_P(AnyFormat, IsUnpackedFromLongerBytes) {
  for (std::size_t more = 1; more < 12; ++more) {
    Bytes bytes = randomBytes(static_cast<std::size_t>(format().byteCount(17)));
    const Samples expected = unpacked(format(), bytes, 17);
    bytes.resize(bytes.size() + more, std::byte{0xFF});
    EXPECT_EQ(unpacked(format(), bytes, 17), expected);
  }
}

TEST_P(AnyFormat, IsPackedToWhatItWasUnpackedFrom) {
  for (const std::size_t count : lengths()) {
    const Bytes bytes = randomBytes(static_cast<std::size_t>(format().byteCount(static_cast<std::int64_t>(count))));
    ASSERT_EQ(packedInto(format(), unpacked(format(), bytes, count), bytes), bytes) << count;
  }
}

TEST_P(AnyFormat, ChangesNothingButTheSamplesWhenPacked) {
  for (const std::size_t count : lengths()) {
    Bytes bytes = randomBytes(static_cast<std::size_t>(format().byteCount(static_cast<std::int64_t>(count))));
    const Bytes before = bytes;
    Samples samples(count);
    for (auto& sample : samples)
      sample = static_cast<std::uint16_t>(random_() >> (32 - format().bits));
    packSamples(format(), samples, bytes);
    ASSERT_EQ(unpacked(format(), bytes, count), samples) << count;
    for (std::size_t bit = count * static_cast<std::size_t>(format().bits); bit < 8 * bytes.size(); ++bit) {
      ASSERT_EQ(bitAt(format(), bytes, bit), bitAt(format(), before, bit)) << "padding of " << count;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Every, AnyFormat,
                         testing::Combine(testing::Values(8, 10, 12, 14, 16), testing::Bool(), testing::Bool()),
                         [](const auto& variant) {
                           return std::to_string(std::get<0>(variant.param)) + "Bits" +
                                  (std::get<1>(variant.param) ? "LittleEndian" : "BigEndian") + "FillOrder" +
                                  (std::get<2>(variant.param) ? "2" : "1");
                         });

// ---- Depths that no file may have

TEST(SamplePacking, RefusesDepthsThatNoFileMayHave) {
  for (const int bits : {-1, 0, 1, 9, 11, 13, 15, 17, 64}) {
    const std::string refusal = "Unsupported DNG: Raw bit depth " + std::to_string(bits);
    for (const bool reversed : {false, true}) {
      const SampleFormat format{bits, true, reversed};
      Samples samples(5);
      Bytes bytes(40, std::byte{0x5A});
      EXPECT_EQ(refusalOf([&] { return unpackSamples(format, bytes, samples), 0; }), refusal);
      EXPECT_EQ(refusalOf([&] { return packSamples(format, samples, bytes), 0; }), refusal);
      EXPECT_EQ(refusalOf([&] { return fitsDepth(format, samples); }), refusal);
      EXPECT_EQ(samples, Samples(5));
      EXPECT_EQ(bytes, Bytes(40, std::byte{0x5A}));
    }
  }
}

// Read as another depth, the samples would reach beyond the seven bytes that five of 11 bits take.
TEST(SamplePacking, ReadsNothingOfADepthThatNoFileMayHave) {
  EXPECT_EQ(refusalOf([] { return unpacked({11, true, false}, Bytes(7), 5); }), "Unsupported DNG: Raw bit depth 11");
  EXPECT_EQ(refusalOf([] { return packedBytes({11, true, false}, Samples(5)); }), "Unsupported DNG: Raw bit depth 11");
}

}  // namespace
}  // namespace tessaly::tests
