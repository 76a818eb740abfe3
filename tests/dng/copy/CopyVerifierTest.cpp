// What the read-back accepts: the planned copy and nothing else, whether all samples are at hand or the changed ones
// only.
#include "dng/PlaneView.h"
#include "dng/WriterFixture.h"
#include "dng/copy/CopyPlanner.h"
#include "dng/copy/CopyVerifier.h"
#include "dng/copy/SegmentOrder.h"

#include <tuple>

namespace tessaly {
namespace {

using tests::noise;
using tests::readBytes;
using tests::Samples;
using tools::DNGBuilder;

constexpr std::int64_t width = 37;  // neither a whole number of groups nor of tiles
constexpr std::int64_t height = 7;
constexpr auto refused = "Invalid DNG structure: Writer re-read verification failed";

class CopyVerifierFixture : public tests::WriterFixture {
 protected:
  // Writes a copy with these samples in place of the source's.
  void makeCopy(const DNGBuilder& builder, const Samples& before, const Samples& written) {
    samples = written;
    makeSource(DNGBuilder(builder).samples(before));
    DNGBuilder(builder).samples(written).write(copyPath);
  }

  std::string refusal(const ChangedSamples& given, const InverseLinearization* inverse = nullptr) const {
    const SourceImage image(source);
    const CopyPlan plan = planCopy(image, false, std::nullopt);
    const ConstPlaneView plane(samples, image.metadata());
    const WrittenSamples of = [&](const SampleRun& run) { return plane.run(run); };
    return failureOf([&] { verifyCopy(copyPath, {image, plan, of, given, inverse}); });
  }

  void flip(std::size_t byte, int bit) const {
    std::vector<std::byte> bytes = readBytes(copyPath);
    bytes[byte] ^= std::byte{1} << bit;
    tools::writeBytes(copyPath, bytes);
  }

  std::filesystem::path copyPath = folder / "copy.dng";
  Samples samples;
};

enum class Layout { oneStrip, strips, tiles, reversedTilesWithGaps };

using Variant = std::tuple<int, bool, int, Layout>;  // bits, little-endian, fill order, layout

class CopyVerifier : public CopyVerifierFixture, public testing::WithParamInterface<Variant> {
 protected:
  CopyVerifier() {
    const auto [bits, little, fillOrder, layout] = GetParam();
    DNGBuilder builder;
    builder.size(width, height).bits(bits).fillOrder(fillOrder).paddingByte(0xA5).trailingBytes(3);
    if (!little) builder.bigEndian();
    if (layout == Layout::strips) builder.strips(3);
    if (layout == Layout::tiles) builder.tiles(16, 4);
    if (layout == Layout::reversedTilesWithGaps) builder.tiles(8, 5).segmentsInReverseOrder().gapBetweenSegments(3);
    const Samples before = noise(width * height, bits);
    Samples after = before;
    for (const SampleRun& run : runs) {
      for (std::int64_t i = 0; i < run.count; ++i)
        after[static_cast<std::size_t>(run.row * width + run.column + i)] ^= 0x55U;
    }
    makeCopy(builder, before, after);
  }

  const std::vector<SampleRun> runs{{0, 0, 1}, {0, 6, 11}, {2, 36, 1}, {3, 0, 37}, {5, 31, 2}, {6, 35, 2}};
};

TEST_P(CopyVerifier, AcceptsThePlannedCopy) {
  EXPECT_EQ(refusal(ChangedSamples()), "");
  EXPECT_EQ(refusal(ChangedSamples(runs)), "");
}

TEST_P(CopyVerifier, RefusesEveryOtherByte) {
  const std::size_t length = readBytes(copyPath).size();
  for (std::size_t byte = 0; byte < length; byte += 1 + byte % 13) {
    const int bit = static_cast<int>(byte % 8);
    flip(byte, bit);
    EXPECT_NE(refusal(ChangedSamples()), "") << byte;
    EXPECT_NE(refusal(ChangedSamples(runs)), "") << byte;
    flip(byte, bit);
  }
}

TEST_P(CopyVerifier, RefusesSamplesThatChangedWithoutBeingAskedTo) {
  const std::vector<SampleRun> fewer(runs.begin() + 1, runs.end());
  EXPECT_EQ(refusal(ChangedSamples(fewer)), refused);
}

TEST_P(CopyVerifier, RefusesSamplesThatWereNotWritten) {
  samples[3 * width + 20] ^= 1U;
  EXPECT_EQ(refusal(ChangedSamples()), refused);
  EXPECT_EQ(refusal(ChangedSamples(runs)), refused);
}

INSTANTIATE_TEST_SUITE_P(Every, CopyVerifier,
                         testing::Combine(testing::Values(8, 10, 12, 14, 16), testing::Bool(), testing::Values(1, 2),
                                          testing::Values(Layout::oneStrip, Layout::strips, Layout::tiles,
                                                          Layout::reversedTilesWithGaps)));

class CopyVerifierWithTable : public CopyVerifierFixture {
 protected:
  // Codes 1 and 2 stand for the same sample.
  const Samples table{0, 10, 10, 30, 40};
  const InverseLinearization inverse{table, 8};

  void makeCodes(const Samples& before, const Samples& after) {
    makeCopy(DNGBuilder().size(4, 1).bits(8).linearization(table), before, after);
  }
};

TEST_F(CopyVerifierWithTable, WantsTheOldCodeOfASampleThatStays) {
  makeCodes({0, 2, 3, 4}, {0, 2, 3, 4});
  samples = {0, 10, 30, 40};
  EXPECT_EQ(refusal(ChangedSamples(), &inverse), "");
  makeCodes({0, 2, 3, 4}, {0, 1, 3, 4});
  samples = {0, 10, 30, 40};
  EXPECT_EQ(refusal(ChangedSamples(), &inverse), refused);
}

TEST_F(CopyVerifierWithTable, WantsTheNearestCodeOfASampleThatTheTableSkips) {
  makeCodes({0, 2, 3, 4}, {0, 2, 1, 4});
  samples = {0, 10, 12, 40};
  const std::vector<SampleRun> runs{{0, 2, 1}};
  EXPECT_EQ(refusal(ChangedSamples(), &inverse), "");
  EXPECT_EQ(refusal(ChangedSamples(runs), &inverse), "");
  samples[2] = 38;
  EXPECT_EQ(refusal(ChangedSamples(runs), &inverse), refused);
}

TEST_F(CopyVerifierFixture, KnowsSegmentsThatShareBytes) {
  const auto share = [&](const DNGBuilder& builder) {
    makeSource(builder);
    return segmentsShareBytes(DNGReader::readMetadata(source));
  };
  DNGBuilder builder;
  builder.size(8, 6).strips(3);
  const std::int64_t offset = builder.segmentOffsets()[0];
  EXPECT_FALSE(share(builder));
  EXPECT_FALSE(share(DNGBuilder(builder).segmentsInReverseOrder()));
  EXPECT_FALSE(share(DNGBuilder(builder).rawTag(273, {4, {offset, offset + 48}})));
  EXPECT_TRUE(share(DNGBuilder(builder).rawTag(273, {4, {offset, offset + 47}})));
  EXPECT_TRUE(share(DNGBuilder(builder).rawTag(273, {4, {offset + 47, offset}})));
  EXPECT_TRUE(share(DNGBuilder(builder).rawTag(273, {4, {offset, offset}})));
}

}  // namespace
}  // namespace tessaly
