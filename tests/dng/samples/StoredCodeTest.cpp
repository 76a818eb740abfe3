// One code at a time against the kernels that pack and unpack whole rows.
#include "dng/samples/SamplePacker.h"
#include "dng/samples/SampleUnpacker.h"
#include "dng/samples/StoredCode.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>
#include <vector>

namespace tessaly {
namespace {

class StoredCode : public testing::TestWithParam<std::tuple<int, bool, bool>> {
 protected:
  static constexpr std::size_t count = 23;  // no whole number of groups

  [[nodiscard]] static SampleFormat formatOfTheCase() {
    const auto [bits, little, reversed] = GetParam();
    return {bits, little, reversed};
  }

  [[nodiscard]] std::vector<std::uint16_t> someCodes() {
    std::vector<std::uint16_t> codes(count);
    for (std::uint16_t& code : codes)
      code = static_cast<std::uint16_t>(random() >> (32 - format.bits));
    return codes;
  }

  [[nodiscard]] std::vector<std::byte> packed(const std::vector<std::uint16_t>& codes) const {
    std::vector<std::byte> bytes(static_cast<std::size_t>(format.byteCount(count)), std::byte{0xA5});
    packSamples(format, codes, bytes);
    return bytes;
  }

  const SampleFormat format = formatOfTheCase();
  std::mt19937 random;
};

TEST_P(StoredCode, IsLoadedFromItsPlace) {
  const std::vector<std::uint16_t> codes = someCodes();
  const std::vector<std::byte> bytes = packed(codes);
  for (std::size_t i = 0; i < count; ++i)
    EXPECT_EQ(loadCode(format, bytes.data(), static_cast<std::int64_t>(i) * format.bits), codes[i]) << i;
}

TEST_P(StoredCode, IsStoredWithoutTouchingAnotherBit) {
  std::vector<std::uint16_t> codes = someCodes();
  std::vector<std::byte> bytes = packed(codes);
  const std::vector<std::uint16_t> others = someCodes();
  for (const std::size_t place : {0UL, 5UL, 22UL, 1UL, 21UL, 6UL, 5UL}) {
    codes[place] = others[place];
    storeCode(format, bytes.data(), static_cast<std::int64_t>(place) * format.bits, others[place]);
    EXPECT_EQ(bytes, packed(codes)) << place;
  }
}

INSTANTIATE_TEST_SUITE_P(Every, StoredCode,
                         testing::Combine(testing::Values(8, 10, 12, 14, 16), testing::Bool(), testing::Bool()));

}  // namespace
}  // namespace tessaly
