#include "platform/VisibleText.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

TEST(VisibleText, LeavesNamesAsTheyAre) {
  EXPECT_EQ(visibleText(""), "");
  EXPECT_EQ(visibleText("L1000123.DNG"), "L1000123.DNG");
  EXPECT_EQ(visibleText("Été 照片 “x” – 1\u00A0000…"), "Été 照片 “x” – 1\u00A0000…");
}

TEST(VisibleText, ShowsPicturesOfControlCharacters) {
  EXPECT_EQ(visibleText("a\x1B[31mb\a"), "a␛[31mb␇");
  EXPECT_EQ(visibleText("a\nb\tc\rd"), "a␊b␉c␍d");
  EXPECT_EQ(visibleText(std::string_view("\0\x7F", 2)), "␀␡");
}

TEST(VisibleText, ShowsTheNumbersOfWhatTurnsTheDirectionOfWriting) {
  EXPECT_EQ(visibleText("photo\u202Egnp.dng"), "photo<U+202E>gnp.dng");
  EXPECT_EQ(visibleText("\u061C\u200E\u200F\u202A\u2066\u2069"), "<U+061C><U+200E><U+200F><U+202A><U+2066><U+2069>");
}

TEST(VisibleText, ShowsTheNumbersOfOtherControlsAndLineEnds) {
  EXPECT_EQ(visibleText("\u0080\u009B31m\u009F"), "<U+0080><U+009B>31m<U+009F>");
  EXPECT_EQ(visibleText("\u2028\u2029"), "<U+2028><U+2029>");
}

TEST(VisibleText, LeavesTheNeighboursOfWhatItShows) {
  const std::string neighbours = " ~\u00A0\u061B\u061D\u200D\u2010\u2027\u202F\u2065\u206A";
  EXPECT_EQ(visibleText(neighbours), neighbours);
}

TEST(VisibleText, ReplacesBytesThatAreNotUTF8) {
  EXPECT_EQ(visibleText("a\x9B[31m"), "a\uFFFD[31m");
  EXPECT_EQ(visibleText("\xE2\x80"), "\uFFFD");
}

TEST(VisibleLines, KeepLineFeedsAndTabs) {
  EXPECT_EQ(visibleLines("a\n\tb\x1B\r\n\u202E"), "a\n\tb␛␍\n<U+202E>");
}

}  // namespace
}  // namespace tessaly
