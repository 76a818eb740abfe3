// Strips and tiles: their number, place and length.
#include "dng/metadata/MetadataFixture.h"

namespace tessaly::tests {
namespace {

class SegmentRules : public MetadataFixture {};

constexpr const char* arrays = "Invalid DNG structure: Raw segment arrays";
constexpr const char* count = "Invalid DNG structure: Raw segment count";
constexpr const char* tileDimensions = "Invalid DNG structure: Tile dimensions";
constexpr const char* byteCount = "Incomplete DNG file: Raw segment byte count";

TEST_F(SegmentRules, RecordStrips) {
  const DNGBuilder builder = DNGBuilder().size(8, 6).strips(4);
  const DNGMetadata metadata = read(builder);
  EXPECT_EQ(metadata.sourceEncoding->offsets, builder.segmentOffsets());
  EXPECT_EQ(metadata.sourceEncoding->byteCounts, (std::vector<std::int64_t>{64, 32}));
  EXPECT_EQ(metadata.rawOffset, static_cast<std::uint64_t>(builder.segmentOffsets()[0]));
  EXPECT_EQ(metadata.rawByteCount, 96);
  EXPECT_EQ(metadata.rowsPerStrip, 4);
  EXPECT_EQ(metadata.sourceEncoding->tileWidth, std::nullopt);
  EXPECT_EQ(metadata.sourceEncoding->tileHeight, std::nullopt);
}

TEST_F(SegmentRules, RecordTiles) {
  const DNGBuilder builder = DNGBuilder().size(20, 18).tiles(16, 16);
  const DNGMetadata metadata = read(builder);
  EXPECT_EQ(metadata.sourceEncoding->offsets, builder.segmentOffsets());
  EXPECT_EQ(metadata.sourceEncoding->byteCounts, (std::vector<std::int64_t>{512, 512, 512, 512}));
  EXPECT_EQ(metadata.sourceEncoding->tileWidth, 16);
  EXPECT_EQ(metadata.sourceEncoding->tileHeight, 16);
  EXPECT_EQ(metadata.rowsPerStrip, 18) << "without RowsPerStrip the height";
}

TEST_F(SegmentRules, TakeTheFirstOffsetEvenWhereItIsTheLast) {
  const DNGBuilder builder = DNGBuilder().size(8, 6).strips(2).segmentsInReverseOrder();
  const DNGMetadata metadata = read(builder);
  EXPECT_EQ(metadata.rawOffset, static_cast<std::uint64_t>(builder.segmentOffsets()[0]));
  EXPECT_GT(metadata.sourceEncoding->offsets[0], metadata.sourceEncoding->offsets[1]);
}

TEST_F(SegmentRules, PreferTiles) {
  const DNGBuilder builder = DNGBuilder().size(16, 16).tiles(16, 16).rawTag(273, longs({9})).rawTag(279, longs({1}));
  EXPECT_EQ(read(builder).sourceEncoding->offsets, builder.segmentOffsets());
}

TEST_F(SegmentRules, GoByTileOffsetsAlone) {
  EXPECT_EQ(read(DNGBuilder().rawTag(322, longs({4})).rawTag(323, longs({4}))).sourceEncoding->tileWidth, std::nullopt)
      << "tile dimensions without tile offsets";
  EXPECT_EQ(refusal(DNGBuilder().rawTag(324, longs({}))), arrays) << "tile offsets without values";
}

TEST_F(SegmentRules, RequireArraysOfEqualLength) {
  EXPECT_EQ(refusal(DNGBuilder().withoutRawTag(273)), arrays);
  EXPECT_EQ(refusal(DNGBuilder().withoutRawTag(279)), arrays);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(279, longs({96, 96}))), arrays);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(273, longs({})).rawTag(279, longs({}))), arrays);
  EXPECT_EQ(refusal(DNGBuilder().tiles(8, 6).withoutRawTag(325)), arrays);
}

TEST_F(SegmentRules, RequireARowPerStrip) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(278, longs({0}))), arrays);
  EXPECT_EQ(refusal(DNGBuilder().tiles(8, 6).rawTag(278, longs({0}))), arrays) << "for tiles too";
}

TEST_F(SegmentRules, AcceptMoreRowsPerStripThanThereAre) {
  EXPECT_EQ(read(DNGBuilder().rawTag(278, longs({0xFFFFFFFF}))).rowsPerStrip, 0xFFFFFFFF);
  EXPECT_EQ(read(DNGBuilder().size(8, 6).withoutRawTag(278)).rowsPerStrip, 6);
}

TEST_F(SegmentRules, Need12StripsFor3000RowsOf256) {
  EXPECT_EQ(read(DNGBuilder().size(2, 3000).strips(256)).sourceEncoding->offsets.size(), 12U);
  const auto withStrips = [](std::int64_t strips) {
    return DNGBuilder()
        .size(2, 3000)
        .strips(256)
        .rawTag(273, {4, std::vector<std::int64_t>(static_cast<std::size_t>(strips), 8)})
        .rawTag(279, {4, std::vector<std::int64_t>(static_cast<std::size_t>(strips), 1024)});
  };
  EXPECT_EQ(refusal(withStrips(12)), "");
  EXPECT_EQ(refusal(withStrips(11)), count);
  EXPECT_EQ(refusal(withStrips(13)), count);
}

TEST_F(SegmentRules, NeedTilesThatCoverTheImage) {
  const DNGBuilder builder = DNGBuilder().size(33, 17).tiles(16, 16);
  EXPECT_EQ(read(builder).sourceEncoding->offsets.size(), 6U);
  EXPECT_EQ(refusal(DNGBuilder(builder).rawTag(322, longs({17}))), count);
  EXPECT_EQ(refusal(DNGBuilder(builder).rawTag(323, longs({17}))), count);
}

TEST_F(SegmentRules, LimitTileDimensions) {
  const auto withTile = [](std::int64_t width, std::int64_t height) {
    return DNGBuilder()
        .size(8, 6)
        .bits(8)
        .tiles(8, 6)
        .rawTag(322, longs({width}))
        .rawTag(323, longs({height}))
        .rawTag(325, longs({width * height}));
  };
  EXPECT_EQ(refusal(withTile(100'000, 6), 1'000'000), "");
  EXPECT_EQ(refusal(withTile(100'001, 6), 1'000'000), tileDimensions);
  EXPECT_EQ(refusal(withTile(8, 100'000), 1'000'000), "");
  EXPECT_EQ(refusal(withTile(8, 100'001), 1'000'000), tileDimensions);
  EXPECT_EQ(refusal(withTile(0, 6)), tileDimensions);
  EXPECT_EQ(refusal(withTile(8, 0)), tileDimensions);
  EXPECT_EQ(refusal(DNGBuilder().tiles(8, 6).withoutRawTag(322)), tileDimensions);
}

TEST_F(SegmentRules, NeedTheBytesOfEveryRow) {
  const auto with = [](std::int64_t bytesOfStrip) {
    return DNGBuilder().size(4000, 2).bits(12).rawTag(279, longs({bytesOfStrip}));
  };
  EXPECT_EQ(refusal(with(12'000)), "");
  EXPECT_EQ(refusal(with(11'999)), byteCount);
  EXPECT_EQ(refusal(with(12'001), 20'000), "");
}

TEST_F(SegmentRules, RoundRowsUpToWholeBytes) {
  EXPECT_EQ(refusal(DNGBuilder().size(3, 2).bits(10).rawTag(279, longs({8}))), "");
  EXPECT_EQ(refusal(DNGBuilder().size(3, 2).bits(10).rawTag(279, longs({7}))), byteCount);
}

TEST_F(SegmentRules, NeedOnlyTheRowsOfTheLastStrip) {
  std::vector<std::int64_t> byteCounts(12, 1024);
  byteCounts.back() = 184 * 4;
  EXPECT_EQ(refusal(DNGBuilder().size(2, 3000).strips(256).rawTag(279, {4, byteCounts})), "");
  byteCounts.back() = 184 * 4 - 1;
  EXPECT_EQ(refusal(DNGBuilder().size(2, 3000).strips(256).rawTag(279, {4, byteCounts})), byteCount);
}

TEST_F(SegmentRules, NeedWholeTilesAtTheEdgeToo) {
  const DNGBuilder builder = DNGBuilder().size(17, 16).tiles(16, 16);
  EXPECT_EQ(refusal(DNGBuilder(builder).rawTag(325, longs({512, 512}))), "");
  EXPECT_EQ(refusal(DNGBuilder(builder).rawTag(325, longs({512, 511}))), byteCount);
}

TEST_F(SegmentRules, DoNotMeasureCompressedSegments) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(259, shorts({7})).rawTag(279, longs({1}))), "");
  EXPECT_EQ(refusal(DNGBuilder().rawTag(259, shorts({7})).rawTag(279, longs({0}))), "");
}

TEST_F(SegmentRules, RequireSegmentsInTheFile) {
  const DNGBuilder builder = DNGBuilder().size(8, 6);
  const std::int64_t offset = builder.segmentOffsets()[0];
  const std::int64_t end = static_cast<std::int64_t>(builder.build().size());
  EXPECT_EQ(refusal(DNGBuilder(builder).rawTag(279, longs({end - offset}))), "");
  EXPECT_EQ(refusal(DNGBuilder(builder).rawTag(279, longs({end - offset + 1}))),
            "Incomplete DNG file: TIFF field at " + std::to_string(offset) + ", length 97");
  EXPECT_EQ(refusal(DNGBuilder(builder).rawTag(259, shorts({7})).rawTag(273, longs({0xFFFFFFFF}))),
            "Incomplete DNG file: TIFF field at 4294967295, length 96")
      << "compressed ones too";
  EXPECT_EQ(refusal(DNGBuilder(builder).rawTag(273, signedRationals({-8, 1}))),
            "Incomplete DNG file: TIFF field at -8, length 96");
}

TEST_F(SegmentRules, CheckSegmentAfterSegment) {
  const DNGBuilder builder = DNGBuilder().size(8, 6).strips(3).rawTag(273, longs({8, 5'000'000}));
  EXPECT_EQ(refusal(DNGBuilder(builder).rawTag(279, longs({47, 48}))), byteCount);
  EXPECT_EQ(refusal(DNGBuilder(builder).rawTag(279, longs({48, 47}))),
            "Incomplete DNG file: TIFF field at 5000000, length 47");
}

TEST_F(SegmentRules, AreAppliedInTheirOrder) {
  DNGBuilder builder = DNGBuilder().size(8, 6).tiles(8, 6).rawTag(324, longs({5'000'000}));
  EXPECT_EQ(refusal(builder), "Incomplete DNG file: TIFF field at 5000000, length 96");
  EXPECT_EQ(refusal(builder.rawTag(322, longs({4}))), count);
  EXPECT_EQ(refusal(builder.rawTag(322, longs({0}))), tileDimensions);
  EXPECT_EQ(refusal(builder.rawTag(278, longs({0}))), arrays);
  EXPECT_EQ(refusal(builder.rawTag(325, floats({0}))), arrays) << "the counts are looked at before the values";
  EXPECT_EQ(refusal(DNGBuilder().rawTag(279, floats({0}))), "Unsupported DNG: Numeric TIFF type 11");
}

TEST_F(SegmentRules, LookAtTheNumberOfOffsetsBeforeReadingThem) {
  const TIFFValues many{1, {0}, 16'777'216, std::nullopt};
  EXPECT_EQ(refusal(DNGBuilder().rawTag(273, many).rawTag(279, many), 30'000'000), count);
}

}  // namespace
}  // namespace tessaly::tests
