// What the decoder reads against what LibRaw reads, on generated files. LibRaw wants an image of some size, a make and
// a model. Version 0.20 knows neither fill order 2 nor uncompressed images of more than one tile.
#include "dng/DNGReader.h"
#include "dng/LibRawWitness.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

namespace tessaly::tests {
namespace {

using tools::DNGBuilder;
using Samples = std::vector<std::uint16_t>;

class LibRawWitness : public testing::TestWithParam<std::tuple<int, bool, std::int64_t>> {};

DNGBuilder camera(int bits) {
  std::mt19937 random(static_cast<unsigned>(bits));
  Samples codes(256 * 192);
  for (std::uint16_t& code : codes)
    code = static_cast<std::uint16_t>(random() >> (32 - bits));
  return DNGBuilder().size(256, 192).bits(bits).make("Maker").model("ONE").samples(codes);
}

void expectAgreement(const DNGBuilder& builder) {
  const TemporaryFolder folder;
  builder.write(folder / "a.dng");
  const std::optional<WitnessedPlane> witness = readWithLibRaw(folder / "a.dng");
  ASSERT_TRUE(witness);
  const RawPlane plane = DNGReader::readPlane(folder / "a.dng");
  EXPECT_EQ(witness->width, plane.metadata.rawWidth);
  EXPECT_EQ(witness->height, plane.metadata.rawHeight);
  EXPECT_TRUE(witness->samples == Samples(plane.samples.begin(), plane.samples.end()));
}

TEST_P(LibRawWitness, ReadsTheSameStrips) {
  const auto& [bits, bigEndian, rowsPerStrip] = GetParam();
  DNGBuilder builder = camera(bits).strips(rowsPerStrip);
  if (bigEndian) builder.bigEndian();
  expectAgreement(builder);
}

INSTANTIATE_TEST_SUITE_P(Of, LibRawWitness,
                         testing::Combine(testing::Values(8, 10, 12, 14, 16), testing::Bool(),
                                          testing::Values(192, 50)),
                         [](const auto& variant) {
                           return std::to_string(std::get<0>(variant.param)) + "Bits" +
                                  (std::get<1>(variant.param) ? "BigEndian" : "LittleEndian") + "Strips" +
                                  std::to_string(std::get<2>(variant.param));
                         });

TEST(LibRawWitnessOf, TheSameSubIFD) {
  expectAgreement(camera(12).inSubIFD());
}

TEST(LibRawWitnessOf, TheSameTile) {
  expectAgreement(camera(12).tiles(256, 192));
}

}  // namespace
}  // namespace tessaly::tests
