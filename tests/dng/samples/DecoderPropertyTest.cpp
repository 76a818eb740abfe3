// The decoder against reading bit by bit, over every way to store a raw image: five depths × two byte orders × two fill
// orders × eight layouts × three image sizes, some with a linearization table, all with garbage in the padding.
#include "dng/DNGReader.h"
#include "support/FileBytes.h"
#include "support/NaiveRawReader.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

namespace tessaly::tests {
namespace {

using tools::DNGBuilder;
using Samples = std::vector<std::uint16_t>;

struct Layout {
  const char* name;
  DNGBuilder (*apply)(DNGBuilder builder);
};

constexpr Layout layouts[] = {
    {"OneStrip", [](DNGBuilder builder) { return builder; }},
    {"Strips", [](DNGBuilder builder) { return builder.strips(5); }},
    {"StripsOfOneRow", [](DNGBuilder builder) { return builder.strips(1); }},
    {"ScatteredStrips",
     [](DNGBuilder builder) { return builder.strips(3).segmentsInReverseOrder().gapBetweenSegments(7); }},
    {"OneTile", [](DNGBuilder builder) { return builder.tiles(80, 48); }},
    {"Tiles", [](DNGBuilder builder) { return builder.tiles(16, 16); }},
    {"OddTiles", [](DNGBuilder builder) { return builder.tiles(13, 7).gapBetweenSegments(1); }},
    {"TilesOfOneSample", [](DNGBuilder builder) { return builder.tiles(1, 1); }},
};

struct Size {
  std::int64_t width;
  std::int64_t height;
};

constexpr Size sizes[] = {{37, 29}, {64, 16}, {1, 1}};

class Decoder : public testing::TestWithParam<std::tuple<int, bool, int>> {
 protected:
  // Calls check(builder, codes) for every layout and size.
  template <typename Check>
  void forEveryImage(Check check) const {
    for (const Layout& layout : layouts) {
      for (const Size& size : sizes) {
        SCOPED_TRACE(testing::Message() << layout.name << " of " << size.width << " x " << size.height);
        const Samples codes = randomCodes(size);
        check(layout.apply(image(size)).samples(codes), codes);
      }
    }
  }

  [[nodiscard]] static int bits() { return std::get<0>(GetParam()); }

  [[nodiscard]] static DNGBuilder image(const Size& size) {
    DNGBuilder builder = DNGBuilder().size(size.width, size.height).bits(bits()).paddingByte(0xB7);
    builder.fillOrder(std::get<2>(GetParam()));
    return std::get<1>(GetParam()) ? builder.bigEndian() : builder.littleEndian();
  }

  [[nodiscard]] static Samples randomCodes(const Size& size) {
    std::mt19937 random(static_cast<unsigned>(size.width * bits()));
    Samples codes(static_cast<std::size_t>(size.width * size.height));
    for (std::uint16_t& code : codes)
      code = static_cast<std::uint16_t>(random() >> (32 - bits()));
    return codes;
  }

  [[nodiscard]] Samples decoded(const DNGBuilder& builder) const {
    builder.write(folder_ / "a.dng");
    const RawSamples samples = DNGReader::readPlane(folder_ / "a.dng").samples;
    return {samples.begin(), samples.end()};
  }

  [[nodiscard]] Samples readBitByBit(const DNGBuilder& builder) const {
    builder.write(folder_ / "a.dng");
    const std::vector<std::byte> file = readBytes(folder_ / "a.dng");
    return NaiveRawReader(file, DNGReader::readMetadata(folder_ / "a.dng")).readPlane();
  }

  TemporaryFolder folder_;
};

TEST_P(Decoder, ReadsWhatStandsInTheFile) {
  forEveryImage([&](const DNGBuilder& builder, const Samples&) { EXPECT_EQ(decoded(builder), readBitByBit(builder)); });
}

TEST_P(Decoder, GivesBackTheSamplesThatWereStored) {
  forEveryImage([&](const DNGBuilder& builder, const Samples& codes) { EXPECT_EQ(decoded(builder), codes); });
}

TEST_P(Decoder, LinearizesWhatStandsInTheFile) {
  Samples table(std::size_t{1} << static_cast<unsigned>(bits()));
  for (std::size_t code = 0; code < table.size(); ++code)
    table[code] = static_cast<std::uint16_t>(code * 40'503);
  table.back() = 65'535;
  forEveryImage([&](DNGBuilder builder, const Samples&) {
    builder.linearization(table);
    EXPECT_EQ(decoded(builder), readBitByBit(builder));
  });
}

INSTANTIATE_TEST_SUITE_P(Of, Decoder,
                         testing::Combine(testing::Values(8, 10, 12, 14, 16), testing::Bool(), testing::Values(1, 2)),
                         [](const auto& variant) {
                           return std::to_string(std::get<0>(variant.param)) + "Bits" +
                                  (std::get<1>(variant.param) ? "BigEndian" : "LittleEndian") + "FillOrder" +
                                  std::to_string(std::get<2>(variant.param));
                         });

}  // namespace
}  // namespace tessaly::tests
