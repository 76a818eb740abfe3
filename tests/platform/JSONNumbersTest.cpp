#include "platform/JSONNumbers.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>

namespace tessaly {
namespace {

using nlohmann::json;

template <typename Integer = std::int64_t>
std::optional<Integer> whole(const char* text) {
  return wholeNumber<Integer>(json::parse(text));
}

TEST(JSONNumbers, AreWholeUpTo64Bits) {
  EXPECT_EQ(whole("0"), 0);
  EXPECT_EQ(whole("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(whole("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(whole("9223372036854775808"), std::nullopt);
  EXPECT_EQ(whole<std::uint64_t>("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
}

TEST(JSONNumbers, AreWholeInTheRangeThatIsAskedFor) {
  EXPECT_EQ(whole<std::uint8_t>("255"), 255);
  EXPECT_EQ(whole<std::uint8_t>("255.0"), 255);
  for (const char* other : {"256", "-1", "256.0", "-1.0", "300000000000"})
    EXPECT_EQ(whole<std::uint8_t>(other), std::nullopt) << other;
}

TEST(JSONNumbers, MayBeWrittenWithADecimalPoint) {
  EXPECT_EQ(whole("4.0"), 4);
  EXPECT_EQ(whole("-2e3"), -2000);
  EXPECT_EQ(whole("4.5"), std::nullopt);
}

TEST(JSONNumbers, AreNotTakenWhereTheyMayHaveBeenRounded) {
  EXPECT_EQ(whole("9223372036854774784.0"), 9223372036854774784);
  EXPECT_EQ(whole("9223372036854775808.0"), std::nullopt);
  EXPECT_EQ(whole("-9223372036854775808.0"), std::nullopt);
  EXPECT_EQ(whole<std::uint64_t>("9223372036854775808.0"), std::nullopt);
}

TEST(JSONNumbers, AreNeitherTextsNorAnythingElse) {
  for (const char* other : {"\"4\"", "null", "true", "[4]", "{}"}) {
    EXPECT_EQ(whole(other), std::nullopt) << other;
    EXPECT_EQ(finiteNumber(json::parse(other)), std::nullopt) << other;
  }
}

TEST(JSONNumbers, AreFinite) {
  EXPECT_EQ(finiteNumber(json::parse("4")), 4.0);
  EXPECT_EQ(finiteNumber(json::parse("-4.5")), -4.5);
  EXPECT_EQ(finiteNumber(json(std::numeric_limits<double>::infinity())), std::nullopt);
  EXPECT_EQ(finiteNumber(json(std::numeric_limits<double>::quiet_NaN())), std::nullopt);
}

}  // namespace
}  // namespace tessaly
