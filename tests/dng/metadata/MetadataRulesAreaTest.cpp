// Active area and default crop.
#include "dng/metadata/MetadataFixture.h"

namespace tessaly::tests {
namespace {

class AreaRules : public MetadataFixture {
 protected:
  // 20 × 16 samples with an active area of 12 × 8 at column 4, row 3.
  [[nodiscard]] static DNGBuilder bordered() { return DNGBuilder().size(20, 16).activeArea(3, 4, 11, 16); }

  [[nodiscard]] RawRectangle crop(const DNGBuilder& builder) const { return read(builder).sourceEncoding->crop; }
};

constexpr const char* bounds = "Invalid DNG structure: ActiveArea/DefaultCrop bounds";
constexpr const char* cropCount = "Invalid DNG structure: DefaultCrop count";
constexpr const char* outside = "Invalid DNG structure: Crop outside ActiveArea";
constexpr const char* fractional = "Unsupported DNG: Fractional DefaultCrop is not supported yet";

TEST_F(AreaRules, TakeTheWholeImageByDefault) {
  const DNGMetadata metadata = read(DNGBuilder().size(20, 16));
  EXPECT_EQ(metadata.sourceEncoding->activeArea, (RawRectangle{0, 0, 20, 16}));
  EXPECT_EQ(metadata.sourceEncoding->crop, (RawRectangle{0, 0, 20, 16}));
  EXPECT_EQ(metadata.activeWidth, 20);
  EXPECT_EQ(metadata.activeHeight, 16);
}

TEST_F(AreaRules, ReadTopLeftBottomRight) {
  const DNGMetadata metadata = read(bordered());
  EXPECT_EQ(metadata.activeX, 4);
  EXPECT_EQ(metadata.activeY, 3);
  EXPECT_EQ(metadata.activeWidth, 12);
  EXPECT_EQ(metadata.activeHeight, 8);
  EXPECT_EQ(metadata.sourceEncoding->activeArea, (RawRectangle{4, 3, 12, 8}));
  EXPECT_EQ(metadata.sourceEncoding->crop, (RawRectangle{4, 3, 12, 8}));
}

TEST_F(AreaRules, RequireFourEdges) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50829, longs({0, 0, 6}))), "Invalid DNG structure: ActiveArea count");
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50829, longs({0, 0, 6, 8, 9}))), "Invalid DNG structure: ActiveArea count");
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50829, longs({}))), "Invalid DNG structure: ActiveArea count");
}

TEST_F(AreaRules, KeepTheActiveAreaInTheImage) {
  const auto area = [&](std::int64_t top, std::int64_t left, std::int64_t bottom, std::int64_t right) {
    return refusal(DNGBuilder().size(20, 16).activeArea(top, left, bottom, right));
  };
  EXPECT_EQ(area(0, 0, 16, 20), "");
  EXPECT_EQ(area(15, 19, 16, 20), "") << "one sample";
  EXPECT_EQ(area(0, 0, 17, 20), bounds);
  EXPECT_EQ(area(0, 0, 16, 21), bounds);
  EXPECT_EQ(area(5, 0, 5, 20), bounds) << "no row";
  EXPECT_EQ(area(0, 7, 16, 7), bounds) << "no column";
  EXPECT_EQ(area(9, 0, 5, 20), bounds) << "upside down";
  EXPECT_EQ(area(0, 0, 0xFFFFFFFF, 0xFFFFFFFF), bounds);
}

TEST_F(AreaRules, RejectNegativeEdges) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50829, signedRationals({-1, 1, 0, 1, 6, 1, 8, 1}))), bounds);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50829, signedRationals({0, 1, -1, 1, 6, 1, 8, 1}))), bounds);
}

TEST_F(AreaRules, PlaceTheCropInTheActiveArea) {
  EXPECT_EQ(crop(bordered().crop(1, 2, 10, 5)), (RawRectangle{5, 5, 10, 5}));
}

TEST_F(AreaRules, FillInWhatTheCropLacks) {
  EXPECT_EQ(crop(bordered().rawTag(50720, longs({7, 6}))), (RawRectangle{4, 3, 7, 6}));
  EXPECT_EQ(refusal(bordered().rawTag(50719, longs({1, 0}))), outside) << "the size is that of the active area";
  EXPECT_EQ(crop(bordered().rawTag(50719, longs({0, 0}))), (RawRectangle{4, 3, 12, 8}));
}

TEST_F(AreaRules, RejectAFractionalCrop) {
  EXPECT_EQ(refusal(bordered().rawTag(50719, rationals({17, 2, 0, 1}))), fractional) << "8.5";
  EXPECT_EQ(refusal(bordered().rawTag(50719, rationals({0, 1, 1, 3}))), fractional);
  EXPECT_EQ(refusal(bordered().rawTag(50720, rationals({7, 1, 13, 2}))), fractional);
}

TEST_F(AreaRules, AcceptRationalsThatAreWhole) {
  EXPECT_EQ(crop(bordered().rawTag(50719, rationals({2, 2, 6, 3})).rawTag(50720, rationals({10, 1, 10, 2}))),
            (RawRectangle{5, 5, 10, 5}));
}

TEST_F(AreaRules, RequirePairs) {
  EXPECT_EQ(refusal(bordered().rawTag(50719, longs({1}))), cropCount);
  EXPECT_EQ(refusal(bordered().rawTag(50719, longs({1, 1, 1}))), cropCount);
  EXPECT_EQ(refusal(bordered().rawTag(50720, longs({1}))), cropCount);
  EXPECT_EQ(refusal(bordered().rawTag(50720, longs({}))), cropCount);
}

TEST_F(AreaRules, KeepTheCropInTheImage) {
  EXPECT_EQ(refusal(bordered().crop(0, 0, 17, 8)), bounds);
  EXPECT_EQ(refusal(bordered().crop(0, 0, 12, 14)), bounds);
  EXPECT_EQ(refusal(bordered().crop(0, 0, 0, 8)), bounds);
  EXPECT_EQ(refusal(bordered().crop(0, 0, 12, 0)), bounds);
  EXPECT_EQ(refusal(bordered().crop(0xFFFFFFFF, 0, 12, 8)), bounds);
  EXPECT_EQ(refusal(bordered().rawTag(50719, signedRationals({-5, 1, 0, 1}))), bounds);
}

TEST_F(AreaRules, KeepTheCropInTheActiveArea) {
  EXPECT_EQ(refusal(bordered().crop(0, 0, 12, 8)), "");
  EXPECT_EQ(refusal(bordered().crop(0, 0, 13, 8)), outside);
  EXPECT_EQ(refusal(bordered().crop(0, 0, 12, 9)), outside);
  EXPECT_EQ(refusal(bordered().crop(1, 0, 12, 8)), outside);
  EXPECT_EQ(refusal(bordered().rawTag(50719, signedRationals({-1, 1, 0, 1}))), outside);
}

TEST_F(AreaRules, AreAppliedInTheirOrder) {
  DNGBuilder builder = bordered().crop(0, 0, 13, 8);
  EXPECT_EQ(refusal(builder), outside);
  EXPECT_EQ(refusal(builder.activeArea(0, 0, 17, 20)), bounds);
  EXPECT_EQ(refusal(builder.rawTag(50719, longs({1}))), cropCount);
  EXPECT_EQ(refusal(builder.rawTag(50720, rationals({1, 2}))), fractional);
  EXPECT_EQ(refusal(builder.rawTag(50719, rationals({1, 2})).rawTag(50720, floats({0}))),
            "Unsupported DNG: Numeric TIFF type 11")
      << "both are read before either is judged";
  EXPECT_EQ(refusal(builder.rawTag(50829, longs({1}))), "Invalid DNG structure: ActiveArea count");
}

TEST_F(AreaRules, KeepMaskedAreasAsTheyAre) {
  EXPECT_EQ(read(DNGBuilder()).sourceEncoding->maskedAreas, (std::vector<std::int64_t>{}));
  EXPECT_EQ(read(DNGBuilder().rawTag(50830, longs({9, 9, 9, 9, 700'000}))).sourceEncoding->maskedAreas,
            (std::vector<std::int64_t>{9, 9, 9, 9, 700'000}));
}

}  // namespace
}  // namespace tessaly::tests
