// Fill order and linearization table.
#include "dng/metadata/MetadataFixture.h"

namespace tessaly::tests {
namespace {

class SampleCodingRules : public MetadataFixture {};

TEST_F(SampleCodingRules, AcceptTwoFillOrders) {
  EXPECT_EQ(read(DNGBuilder()).sourceEncoding->fillOrder, 1);
  EXPECT_EQ(read(DNGBuilder().fillOrder(1)).sourceEncoding->fillOrder, 1);
  EXPECT_EQ(read(DNGBuilder().fillOrder(2)).sourceEncoding->fillOrder, 2);
  EXPECT_EQ(refusal(DNGBuilder().rawTag(266, shorts({0}))), "Unsupported DNG: FillOrder 0");
  EXPECT_EQ(refusal(DNGBuilder().rawTag(266, shorts({3}))), "Unsupported DNG: FillOrder 3");
}

TEST_F(SampleCodingRules, KeepTheLinearizationTable) {
  EXPECT_EQ(read(DNGBuilder()).sourceEncoding->linearization, (std::vector<std::uint16_t>{}));
  EXPECT_EQ(read(DNGBuilder().linearization({0, 7, 65535})).sourceEncoding->linearization,
            (std::vector<std::uint16_t>{0, 7, 65535}));
}

TEST_F(SampleCodingRules, LimitTheLinearizationTable) {
  const std::string size = "Invalid DNG structure: LinearizationTable size";
  const auto table = [](std::size_t length) {
    return DNGBuilder().linearization(std::vector<std::uint16_t>(length, 9));
  };
  EXPECT_EQ(refusal(table(1)), "");
  EXPECT_EQ(refusal(table(65'536)), "");
  EXPECT_EQ(refusal(table(65'537)), size);
  EXPECT_EQ(refusal(table(0)), size);
}

TEST_F(SampleCodingRules, LimitTheValuesOfTheTable) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50712, longs({5, 65'535}))), "");
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50712, longs({65'536, 5}))), "Invalid DNG structure: LinearizationTable");
  EXPECT_EQ(refusal(DNGBuilder().rawTag(50712, signedRationals({-1, 1, 5, 1}))),
            "Invalid DNG structure: LinearizationTable");
}

TEST_F(SampleCodingRules, JudgeTheFillOrderFirst) {
  EXPECT_EQ(refusal(DNGBuilder().rawTag(266, shorts({5})).rawTag(50712, longs({65'536}))),
            "Unsupported DNG: FillOrder 5");
}

}  // namespace
}  // namespace tessaly::tests
