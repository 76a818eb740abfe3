#include "calibration/review/NumberParsing.h"
#include "calibration/review/ReviewCandidates.h"

#include <gmock/gmock.h>

#include <limits>

namespace tessaly {
namespace {

using namespace CandidateSelection;
using tests::refusal;

TEST(PixelConfidence, IsAPercentageFrom50To100) {
  EXPECT_EQ(parseConfidence("95"), 0.95);
  EXPECT_EQ(parseConfidence("98"), defaultPixelConfidence);
  EXPECT_EQ(parseConfidence("50"), 0.5);
  EXPECT_EQ(parseConfidence("100"), 1.0);
  EXPECT_EQ(parseConfidence("99.5"), 0.995);
  for (const char* const text : {"49", "101", "49.999", "100.001", "0", "-95"})
    EXPECT_EQ(parseConfidence(text), std::nullopt) << text;
}

TEST(PixelConfidence, MayHaveWhiteSpaceAndPercentSigns) {
  for (const char* const text : {"95%", " 95 ", "95 %", "\t95\n", "%95", "%%95%%", "9%5",
                                 "\xC2\xA0"
                                 "95\xE2\x80\x89%"})
    EXPECT_EQ(parseConfidence(text), 0.95) << text;
}

TEST(PixelConfidence, IsWrittenAsADecimalNumberWithAPoint) {
  for (const char* const text : {"+95", "95.0", "95.", "9.5e1", "950E-1", "0095"})
    EXPECT_EQ(parseConfidence(text), 0.95) << text;
  for (const char* const text :
       {"abc", "", "%", " ", "95,5", "9 5", "0x5F", "inf", "nan", "+-95", "++95", "95-", "1e400", "９５", "95 98",
        "\xFF"
        "95"})
    EXPECT_EQ(parseConfidence(text), std::nullopt) << text;
}

TEST(PixelConfidence, IsAskedForAgainWhenItIsNone) {
  EXPECT_EQ(requireConfidence("95%"), 0.95);
  for (const char* const text : {"49", "101", "abc"}) {
    EXPECT_EQ(refusal([text] { return requireConfidence(text); }),
              "Enter a pixel-confidence value from 50 to 100, such as 95 or 98.");
  }
}

TEST(WholeNumber, IsAnOptionalSignAndDigits) {
  EXPECT_EQ(parseWholeNumber("0"), 0);
  EXPECT_EQ(parseWholeNumber("+12"), 12);
  EXPECT_EQ(parseWholeNumber("-12"), -12);
  EXPECT_EQ(parseWholeNumber("-0"), 0);
  EXPECT_EQ(parseWholeNumber("007"), 7);
  for (const char* const text : {"", "+", "-", "+-1", "--1", "1.0", "1e3", " 1", "1 ", "1\n", "0x1", "1a", "١"})
    EXPECT_EQ(parseWholeNumber(text), std::nullopt) << text;
}

TEST(WholeNumber, Fits64Bits) {
  EXPECT_EQ(parseWholeNumber("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(parseWholeNumber("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(parseWholeNumber("9223372036854775808"), std::nullopt);
  EXPECT_EQ(parseWholeNumber("-9223372036854775809"), std::nullopt);
}

}  // namespace
}  // namespace tessaly
