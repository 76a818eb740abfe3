// The colour cell of a mosaic.
#include "dng/metadata/MetadataFixture.h"

namespace tessaly::tests {
namespace {

class BayerRules : public MetadataFixture {
 protected:
  [[nodiscard]] std::string refusalOfPattern(std::initializer_list<std::int64_t> pattern) const {
    return refusal(DNGBuilder().rawTag(33422, bytes(pattern)));
  }

  [[nodiscard]] std::vector<std::uint8_t> pattern(const DNGBuilder& builder) const {
    const DNGMetadata metadata = read(builder);
    EXPECT_EQ(metadata.cfaLayout->width, 2);
    EXPECT_EQ(metadata.cfaLayout->height, 2);
    return metadata.cfaLayout->pattern;
  }
};

using Pattern = std::vector<std::uint8_t>;

constexpr const char* notTwoByTwo = "Unsupported DNG: Only 2×2 Bayer CFA is supported (X-Trans is not supported)";
constexpr const char* plane = "Unsupported DNG: Invalid Bayer CFA plane";
constexpr const char* arrangement = "Unsupported DNG: Invalid Bayer arrangement";

TEST_F(BayerRules, AcceptTheFourArrangements) {
  EXPECT_EQ(pattern(DNGBuilder().cfa("RGGB")), (Pattern{0, 1, 1, 2}));
  EXPECT_EQ(pattern(DNGBuilder().cfa("BGGR")), (Pattern{2, 1, 1, 0}));
  EXPECT_EQ(pattern(DNGBuilder().cfa("GRBG")), (Pattern{1, 0, 2, 1}));
  EXPECT_EQ(pattern(DNGBuilder().cfa("GBRG")), (Pattern{1, 2, 0, 1}));
}

TEST_F(BayerRules, RejectGreensThatAreNotOnADiagonal) {
  EXPECT_EQ(refusalOfPattern({1, 0, 1, 2}), arrangement);
  EXPECT_EQ(refusalOfPattern({1, 1, 0, 2}), arrangement);
  EXPECT_EQ(refusalOfPattern({0, 2, 1, 1}), arrangement);
  EXPECT_EQ(refusalOfPattern({0, 1, 2, 1}), arrangement);
}

TEST_F(BayerRules, RejectTheWrongNumberOfAColour) {
  EXPECT_EQ(refusalOfPattern({0, 1, 1, 0}), arrangement);
  EXPECT_EQ(refusalOfPattern({2, 1, 1, 2}), arrangement);
  EXPECT_EQ(refusalOfPattern({0, 1, 2, 2}), arrangement);
  EXPECT_EQ(refusalOfPattern({1, 1, 1, 1}), arrangement);
}

TEST_F(BayerRules, RejectOtherColours) {
  EXPECT_EQ(refusalOfPattern({0, 1, 1, 3}), plane);
  EXPECT_EQ(refusalOfPattern({255, 1, 1, 2}), plane);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(33422, {10, {-1, 1, 1, 1, 1, 1, 2, 1}})), plane);
}

TEST_F(BayerRules, RequireACellOfTwoByTwo) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(33421, shorts({6, 6}))), notTwoByTwo);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(33421, shorts({2, 4}))), notTwoByTwo);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(33421, shorts({4, 2}))), notTwoByTwo);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(33421, shorts({2}))), notTwoByTwo);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(33421, shorts({2, 2, 2}))), notTwoByTwo);
  EXPECT_EQ(refusal(DNGBuilder().withoutRawTag(33421)), notTwoByTwo);
}

TEST_F(BayerRules, RequireFourPatternValues) {
  EXPECT_EQ(refusalOfPattern({0, 1, 1}), notTwoByTwo);
  EXPECT_EQ(refusalOfPattern({0, 1, 1, 2, 0}), notTwoByTwo);
  EXPECT_EQ(refusal(DNGBuilder().withoutRawTag(33422)), notTwoByTwo);
}

TEST_F(BayerRules, TranslatePlanesThroughTheirColours) {
  // Planes are numbered 0 green, 1 blue, 2 red.
  EXPECT_EQ(pattern(DNGBuilder().rawTag(50710, bytes({1, 2, 0})).rawTag(33422, bytes({2, 0, 0, 1}))),
            (Pattern{0, 1, 1, 2}));
  EXPECT_EQ(pattern(DNGBuilder().rawTag(50710, bytes({0, 1, 2}))), (Pattern{0, 1, 1, 2}));
  EXPECT_EQ(pattern(DNGBuilder().rawTag(50710, bytes({7, 1, 2, 0})).rawTag(33422, bytes({3, 1, 1, 2}))),
            (Pattern{0, 1, 1, 2}))
      << "a colour that no plane has may be anything";
}

TEST_F(BayerRules, RejectAPlaneWithoutAColour) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50710, bytes({0, 1}))), plane);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50710, bytes({}))), plane);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50710, bytes({0, 1, 3}))), plane);
}

TEST_F(BayerRules, JudgeThePlanesBeforeTheArrangement) {
  EXPECT_EQ(refusalOfPattern({1, 1, 1, 9}), plane);
}

TEST_F(BayerRules, JudgeTheCellBeforeItsPlanes) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(33421, shorts({6, 6})).rawTag(33422, bytes({9, 9, 9, 9}))), notTwoByTwo);
}

}  // namespace
}  // namespace tessaly::tests
