// Dimensions, depth, compression, planes, photometric interpretation.
#include "dng/metadata/MetadataFixture.h"

namespace tessaly::tests {
namespace {

class FormatRules : public MetadataFixture {
 protected:
  // One strip of 8-bit samples that is as long as it must be, in a file with a hole.
  [[nodiscard]] std::string refusalOfSize(std::int64_t width, std::int64_t height) const {
    return refusal(DNGBuilder()
                       .bits(8)
                       .rawTag(256, longs({width}))
                       .rawTag(257, longs({height}))
                       .rawTag(278, longs({height}))
                       .rawTag(279, longs({width * height})),
                   300'000'000);
  }
};

constexpr const char* dimensions = "Invalid DNG structure: Raw dimensions";

TEST_F(FormatRules, AcceptASingleSample) {
  EXPECT_EQ(refusal(DNGBuilder().size(1, 1)), "");
}

TEST_F(FormatRules, AcceptSidesUpTo100000) {
  EXPECT_EQ(refusalOfSize(100'000, 1), "");
  EXPECT_EQ(refusalOfSize(1, 100'000), "");
  EXPECT_EQ(refusalOfSize(100'001, 1), dimensions);
  EXPECT_EQ(refusalOfSize(1, 100'001), dimensions);
}

TEST_F(FormatRules, RejectSidesOfZero) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(256, longs({0}))), dimensions);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(257, longs({0}))), dimensions);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(257, longs({}))), dimensions) << "no value counts as 0";
}

TEST_F(FormatRules, RejectNegativeSides) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(256, signedRationals({-8, 1}))), dimensions);
}

TEST_F(FormatRules, Accept250MillionSamples) {
  EXPECT_EQ(refusalOfSize(100'000, 2'500), "");
  EXPECT_EQ(refusalOfSize(99'999, 2'500), "");
  EXPECT_EQ(refusalOfSize(100'000, 2'501), dimensions);
  EXPECT_EQ(refusalOfSize(15'625, 16'000), "");
  EXPECT_EQ(refusalOfSize(15'625, 16'001), dimensions);
}

TEST_F(FormatRules, TruncateRationalSides) {
  EXPECT_EQ(read(DNGBuilder().size(8, 6).rawTag(256, rationals({17, 2}))).rawWidth, 8);
}

TEST_F(FormatRules, RequireOneBitsPerSampleValue) {
  const std::string one = "Unsupported DNG: One BitsPerSample value is required";
  EXPECT_EQ(refusal(DNGBuilder().rawTag(258, shorts({16, 16, 16}))), one);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(258, shorts({}))), one);
  EXPECT_EQ(refusal(DNGBuilder().withoutRawTag(258)), one);
}

TEST_F(FormatRules, AcceptFiveDepths) {
  for (const int bits : {8, 10, 12, 14, 16}) {
    EXPECT_EQ(read(DNGBuilder().bits(bits)).bitsPerSample, bits);
  }
}

TEST_F(FormatRules, RejectEveryOtherDepth) {
  for (const int bits : {0, 1, 7, 9, 11, 13, 15, 17, 32}) {
    EXPECT_EQ(refusal(DNGBuilder().rawTag(258, shorts({bits}))),
              "Unsupported DNG: Raw bit depth " + std::to_string(bits));
  }
}

TEST_F(FormatRules, NameThePackingByTheDepth) {
  EXPECT_EQ(read(DNGBuilder().bits(12)).packing, RawPacking::packed12MSB);
  EXPECT_EQ(read(DNGBuilder().bits(14)).packing, RawPacking::littleEndian16);
  EXPECT_EQ(read(DNGBuilder().bits(16).bigEndian()).packing, RawPacking::littleEndian16);
}

TEST_F(FormatRules, TakeAnyCompression) {
  EXPECT_EQ(read(DNGBuilder().rawTag(259, shorts({7}))).compression, 7);
  EXPECT_EQ(read(DNGBuilder().rawTag(259, longs({4'000'000'000}))).compression, 4'000'000'000);
  EXPECT_EQ(read(DNGBuilder().withoutRawTag(259)).compression, 1);
}

TEST_F(FormatRules, RequireOneSamplePerPixel) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(277, shorts({3}))), "Unsupported DNG: Multiple raw samples per pixel");
  EXPECT_EQ(refusal(DNGBuilder().rawTag(277, shorts({0}))), "Unsupported DNG: Multiple raw samples per pixel");
  EXPECT_EQ(read(DNGBuilder().withoutRawTag(277)).samplesPerPixel, 1);
}

TEST_F(FormatRules, RequireOnePlane) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(284, shorts({2}))), "Unsupported DNG: Planar raw");
  EXPECT_EQ(refusal(DNGBuilder().withoutRawTag(284)), "");
}

TEST_F(FormatRules, AcceptLinearImagesWithoutALayout) {
  for (const std::int64_t photometric : {1, 34892}) {
    const DNGMetadata metadata = read(DNGBuilder().linear(photometric));
    EXPECT_EQ(metadata.cfaLayout, std::nullopt);
    EXPECT_EQ(metadata.photometricInterpretation, photometric);
  }
}

TEST_F(FormatRules, DoNotLookAtTheCellOfALinearImage) {
  EXPECT_EQ(read(DNGBuilder().linear().rawTag(33421, shorts({6, 6}))).cfaLayout, std::nullopt);
}

// A photometric interpretation that is none of the three is no raw image to begin with.
TEST_F(FormatRules, FindNoImageOfAnotherPhotometricInterpretation) {
  EXPECT_EQ(refusal(DNGBuilder().linear(2)), "Invalid DNG structure: No main raw image IFD");
}

TEST_F(FormatRules, RefuseNumbersOfOtherTypes) {
  for (const int tag : {256, 257, 258, 259, 262, 277, 284}) {
    EXPECT_EQ(refusal(DNGBuilder().rawTag(tag, floats({0x3F800000}))), "Unsupported DNG: Numeric TIFF type 11") << tag;
  }
}

TEST_F(FormatRules, AreAppliedInTheirOrder) {
  DNGBuilder builder = DNGBuilder().rawTag(284, shorts({2})).rawTag(33421, shorts({6, 6}));
  EXPECT_EQ(refusal(builder), "Unsupported DNG: Planar raw");
  EXPECT_EQ(refusal(builder.rawTag(277, shorts({3}))), "Unsupported DNG: Multiple raw samples per pixel");
  EXPECT_EQ(refusal(builder.rawTag(258, shorts({11}))), "Unsupported DNG: Raw bit depth 11");
  EXPECT_EQ(refusal(builder.rawTag(259, floats({0}))), "Unsupported DNG: Numeric TIFF type 11")
      << "the compression is read before the depth is judged";
  EXPECT_EQ(refusal(builder.rawTag(258, shorts({11, 11}))), "Unsupported DNG: One BitsPerSample value is required");
  EXPECT_EQ(refusal(builder.rawTag(256, longs({0}))), dimensions);
}

}  // namespace
}  // namespace tessaly::tests
