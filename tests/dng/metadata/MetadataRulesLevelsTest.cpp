// Black levels, their deltas and repeat pattern, white level.
#include "dng/metadata/MetadataFixture.h"

namespace tessaly::tests {
namespace {

class LevelRules : public MetadataFixture {
 protected:
  [[nodiscard]] std::string refusalOfBlack(const TIFFValues& values) const {
    return refusal(DNGBuilder().rawTag(50714, values));
  }

  [[nodiscard]] std::string refusalOfDelta(int tag, std::size_t values) const {
    const std::vector<std::int64_t> pairs(2 * values, 1);
    return refusal(DNGBuilder().size(8, 6).activeArea(1, 1, 6, 8).rawTag(tag, {10, pairs}));
  }
};

using Doubles = std::vector<double>;
using Ints = std::vector<std::int64_t>;

constexpr const char* blackType = "Invalid DNG structure: BlackLevel type/count";
constexpr const char* values = "Invalid DNG structure: BlackLevel/WhiteLevel values";
constexpr const char* deltas = "Invalid DNG structure: BlackLevelDelta dimensions";
constexpr const char* repeatDim = "Invalid DNG structure: BlackLevelRepeatDim";
constexpr const char* domain = "Unsupported DNG: WhiteLevel outside UInt16 domain";

TEST_F(LevelRules, HaveNoBlackByDefault) {
  const DNGMetadata metadata = read(DNGBuilder());
  EXPECT_EQ(metadata.blackLevel, 0);
  EXPECT_EQ(metadata.sourceEncoding->blackLevels, Doubles{});
  EXPECT_EQ(metadata.sourceEncoding->blackRepeat, Ints{});
  EXPECT_EQ(metadata.sourceEncoding->whiteLevels, Ints{});
}

TEST_F(LevelRules, AcceptThreeTypesOfBlack) {
  EXPECT_EQ(read(DNGBuilder().rawTag(50714, shorts({64}))).blackLevel, 64);
  EXPECT_EQ(read(DNGBuilder().rawTag(50714, longs({64}))).blackLevel, 64);
  EXPECT_EQ(read(DNGBuilder().rawTag(50714, rationals({129, 2}))).sourceEncoding->blackLevels, Doubles{64.5});
}

TEST_F(LevelRules, RejectOtherTypesOfBlack) {
  for (const int type : {1, 2, 6, 7, 8, 9, 10, 11, 12, 13}) {
    EXPECT_EQ(refusalOfBlack({type, {0, 0}}), blackType) << type;
  }
}

TEST_F(LevelRules, RequireAValueOfBlack) {
  EXPECT_EQ(refusalOfBlack(shorts({})), blackType);
}

TEST_F(LevelRules, TruncateTheMeanOfBlack) {
  EXPECT_EQ(read(DNGBuilder().rawTag(50714, shorts({1, 2, 2, 2}))).blackLevel, 1);
  EXPECT_EQ(read(DNGBuilder().rawTag(50714, shorts({2, 2, 2, 3}))).blackLevel, 2);
  EXPECT_EQ(read(DNGBuilder().rawTag(50714, rationals({1999, 1000, 1, 1000}))).blackLevel, 1);
}

TEST_F(LevelRules, LimitBlackTo65535) {
  EXPECT_EQ(refusalOfBlack(longs({65'536})), values);
  EXPECT_EQ(refusalOfBlack(longs({70'000})), values);
  EXPECT_EQ(refusalOfBlack(longs({1, 1, 70'000})), values);
  EXPECT_EQ(refusalOfBlack(rationals({131'071, 2})), values) << "65535.5";
  EXPECT_EQ(refusalOfBlack(longs({65'535})), domain) << "within the limit, but white is 65535 too";
}

TEST_F(LevelRules, KeepBlackBelowWhite) {
  const auto levels = [&](std::int64_t black, std::int64_t white) {
    return refusal(DNGBuilder().black(black).white(white));
  };
  EXPECT_EQ(levels(16'382, 16'383), "");
  EXPECT_EQ(levels(16'383, 16'383), domain);
  EXPECT_EQ(levels(16'384, 16'383), domain);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50714, rationals({32'765, 2})).white(16'383)), "") << "16382.5";
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50714, longs({0, 100})).white(100)), domain) << "every one of them";
}

TEST_F(LevelRules, LimitWhite) {
  EXPECT_EQ(read(DNGBuilder().white(1)).whiteLevel, 1);
  EXPECT_EQ(read(DNGBuilder().white(65'535)).whiteLevel, 65'535);
  EXPECT_EQ(refusal(DNGBuilder().white(0)), domain);
  EXPECT_EQ(refusal(DNGBuilder().white(65'536)), domain);
}

TEST_F(LevelRules, RequireOneValueOfWhite) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50717, longs({100, 100}))), values);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50717, longs({}))), values);
  EXPECT_EQ(read(DNGBuilder().white(100)).sourceEncoding->whiteLevels, Ints{100});
}

TEST_F(LevelRules, TakeWhiteFromTheTableOrTheDepth) {
  EXPECT_EQ(read(DNGBuilder().bits(14)).whiteLevel, 16'383);
  EXPECT_EQ(read(DNGBuilder().bits(8)).whiteLevel, 255);
  EXPECT_EQ(read(DNGBuilder().bits(16)).whiteLevel, 65'535);
  EXPECT_EQ(read(DNGBuilder().bits(8).linearization({0, 900, 400})).whiteLevel, 400) << "the last, not the largest";
  EXPECT_EQ(read(DNGBuilder().bits(8).linearization({0, 900, 400}).white(70)).whiteLevel, 70);
  EXPECT_EQ(refusal(DNGBuilder().bits(8).linearization({5, 0})), domain);
}

TEST_F(LevelRules, NeedADeltaForEveryActiveColumnAndRow) {
  EXPECT_EQ(refusalOfDelta(50715, 7), "");
  EXPECT_EQ(refusalOfDelta(50715, 8), deltas) << "not the raw width";
  EXPECT_EQ(refusalOfDelta(50715, 6), deltas);
  EXPECT_EQ(refusalOfDelta(50715, 0), deltas);
  EXPECT_EQ(refusalOfDelta(50716, 5), "");
  EXPECT_EQ(refusalOfDelta(50716, 6), deltas) << "not the raw height";
  EXPECT_EQ(refusalOfDelta(50716, 4), deltas);
}

TEST_F(LevelRules, KeepTheDeltas) {
  const DNGMetadata metadata =
      read(DNGBuilder().size(2, 1).rawTag(50715, signedRationals({-1, 2, 3, 4})).rawTag(50716, rationals({5, 1})));
  EXPECT_EQ(metadata.sourceEncoding->blackDeltaH, (Doubles{-0.5, 0.75}));
  EXPECT_EQ(metadata.sourceEncoding->blackDeltaV, Doubles{5.0});
}

TEST_F(LevelRules, RequireARepeatPatternOfAllBlackLevels) {
  const auto repeat = [&](const TIFFValues& dim, const TIFFValues& black) {
    return refusal(DNGBuilder().rawTag(50713, dim).rawTag(50714, black));
  };
  EXPECT_EQ(repeat(shorts({2, 2}), shorts({1, 2, 3, 4})), "");
  EXPECT_EQ(repeat(shorts({1, 4}), shorts({1, 2, 3, 4})), "");
  EXPECT_EQ(repeat(shorts({1, 1}), shorts({1})), "");
  EXPECT_EQ(repeat(shorts({2, 2}), shorts({1, 2, 3})), repeatDim);
  EXPECT_EQ(repeat(shorts({2, 1}), shorts({1, 2, 3, 4})), repeatDim);
  EXPECT_EQ(repeat(shorts({4}), shorts({1, 2, 3, 4})), repeatDim);
  EXPECT_EQ(repeat(shorts({2, 2, 1}), shorts({1, 2, 3, 4})), repeatDim);
  EXPECT_EQ(repeat(shorts({0, 4}), shorts({1, 2, 3, 4})), repeatDim);
}

TEST_F(LevelRules, CountMissingBlackLevelsAsOne) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50713, shorts({1, 1}))), "");
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50713, shorts({1, 2}))), repeatDim);
}

TEST_F(LevelRules, NeedNoRepeatPattern) {
  EXPECT_EQ(read(DNGBuilder().rawTag(50714, shorts({1, 2, 3}))).sourceEncoding->blackLevels.size(), 3U);
}

TEST_F(LevelRules, LimitTheRepeatPattern) {
  const TIFFValues black{3, std::vector<std::int64_t>(100'000, 5)};
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50713, longs({100'000, 1})).rawTag(50714, black)), "");
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50713, longs({1, 100'000})).rawTag(50714, black)), "");
  const TIFFValues more{3, std::vector<std::int64_t>(100'001, 5)};
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50713, longs({100'001, 1})).rawTag(50714, more)), repeatDim);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50713, longs({1, 100'001})).rawTag(50714, more)), repeatDim);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50713, longs({0xFFFFFFFF, 0xFFFFFFFF}))), repeatDim);
}

TEST_F(LevelRules, AreAppliedInTheirOrder) {
  DNGBuilder builder = DNGBuilder().white(0);
  EXPECT_EQ(refusal(builder), domain);
  EXPECT_EQ(refusal(builder.rawTag(50713, shorts({3, 3}))), repeatDim);
  EXPECT_EQ(refusal(builder.rawTag(50716, rationals({1, 1}))), deltas);
  EXPECT_EQ(refusal(builder.rawTag(50715, rationals({1, 0}))), deltas) << "the count is looked at before the values";
  EXPECT_EQ(refusal(builder.rawTag(50717, longs({1, 2}))), values);
  EXPECT_EQ(refusal(builder.rawTag(50714, rationals({70'000, 1, 1, 0}))),
            "Invalid DNG structure: Zero rational denominator")
      << "all are read before one is judged";
  EXPECT_EQ(refusal(builder.rawTag(50714, floats({0}))), blackType);
}

}  // namespace
}  // namespace tessaly::tests
