#include "platform/Text.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>
#include <future>
#include <ios>
#include <new>
#include <stdexcept>
#include <system_error>

namespace tessaly::tests {
namespace {

TEST(DisplayText, KeepsUTF8) {
  EXPECT_EQ(displayText("Été 身体 📷"), "Été 身体 📷");
  EXPECT_EQ(displayText(""), "");
}

TEST(DisplayText, ShowsForeignBytesAsReplacementCharacters) {
  EXPECT_EQ(displayText("a\xFFz"), "a\uFFFDz");
  EXPECT_EQ(displayText("\xC3"), "\uFFFD");
  EXPECT_EQ(displayText("\xE9t\xE9.dng"), "\uFFFDt\uFFFD.dng");
}

TEST(DisplayName, IsTheLastComponent) {
  EXPECT_EQ(displayName("/photos/IMG_1.dng"), "IMG_1.dng");
  EXPECT_EQ(displayName("IMG_1.dng"), "IMG_1.dng");
  EXPECT_EQ(displayName("/photos/body/"), "body");
  EXPECT_EQ(displayName("/photos/body//"), "body");
  EXPECT_EQ(displayName("body/"), "body");
}

TEST(DisplayName, OfTheRootIsTheRoot) {
  EXPECT_EQ(displayName("/"), "/");
  EXPECT_EQ(displayName(""), "");
}

TEST(DisplayName, CanAlwaysBeShown) {
  EXPECT_EQ(displayName("/photos/\xE9t\xE9.dng"), "\uFFFDt\uFFFD.dng");
}

TEST(IsValidUTF8, AcceptsWhatUnicodeAllows) {
  EXPECT_TRUE(isValidUTF8(""));
  EXPECT_TRUE(isValidUTF8("plain"));
  EXPECT_TRUE(isValidUTF8("é 身 📷"));
  EXPECT_TRUE(isValidUTF8(std::string_view("a\0b", 3)));
}

TEST(IsValidUTF8, RejectsWhatItDoesNot) {
  EXPECT_FALSE(isValidUTF8("\xFF"));
  EXPECT_FALSE(isValidUTF8("abc\xC3"));           // cut short
  EXPECT_FALSE(isValidUTF8("\x80"));              // continuation without a start
  EXPECT_FALSE(isValidUTF8("\xC0\xAF"));          // overlong
  EXPECT_FALSE(isValidUTF8("\xED\xA0\x80"));      // a surrogate
  EXPECT_FALSE(isValidUTF8("\xF4\x90\x80\x80"));  // beyond U+10FFFF
}

TEST(Trimmed, RemovesWhiteSpaceAtBothEndsOnly) {
  EXPECT_EQ(trimmed("  12 34\t\r\n"), "12 34");
  EXPECT_EQ(trimmed("1234"), "1234");
  EXPECT_EQ(trimmed(" \t\n"), "");
  EXPECT_EQ(trimmed(""), "");
}

TEST(Trimmed, KnowsUnicodeWhiteSpace) {
  EXPECT_EQ(trimmed("\u00A0\u3000\u2003"
                    "42"
                    "\u2028\u0085\u202F"),
            "42");
  EXPECT_EQ(trimmed("\u200B"
                    "42"),
            "\u200B"
            "42")
      << "a zero-width space is no White_Space";
  EXPECT_EQ(trimmed(std::string_view("\0"
                                     "42",
                                     3)),
            std::string("\0"
                        "42",
                        3));
}

TEST(Trimmed, LeavesForeignBytesAlone) {
  EXPECT_EQ(trimmed(" \xFF "), "\xFF");
}

TEST(LowerCased, FollowsUnicode) {
  EXPECT_EQ(lowerCased("DNG"), "dng");
  EXPECT_EQ(lowerCased("ÉTÉ ΣΟΦΟΣ"), "été σοφος");
  EXPECT_EQ(lowerCased(""), "");
}

TEST(LowerCased, IsNotTurkish) {
  EXPECT_EQ(lowerCased("TIFF"), "tiff");
}

TEST(LowerCased, KeepsForeignBytes) {
  EXPECT_EQ(lowerCased("A\xFF"
                       "B\xC3"),
            "a\xFF"
            "b\xC3");
  EXPECT_EQ(lowerCased("\xFF\xFE"), "\xFF\xFE");
}

TEST(LowerCasedExtension, IsWhatFollowsTheLastDot) {
  EXPECT_EQ(lowerCasedExtension("/photos/IMG_1.DNG"), "dng");
  EXPECT_EQ(lowerCasedExtension("IMG.1.Cr3"), "cr3");
  EXPECT_EQ(lowerCasedExtension("/pho.tos/IMG"), "");
  EXPECT_EQ(lowerCasedExtension("IMG."), "");
  EXPECT_EQ(lowerCasedExtension(".nef"), "") << "a hidden file without an extension";
  EXPECT_EQ(lowerCasedExtension("/photos/body.NEF/"), "nef");
}

TEST(SystemMessage, IsTheSystemsOwn) {
  EXPECT_EQ(systemMessage(ENOENT), "No such file or directory");
  EXPECT_EQ(systemMessage(ENOMEM), "Cannot allocate memory");
  EXPECT_EQ(systemMessage(EIO), "Input/output error");
  EXPECT_EQ(systemMessage(99999), "Unknown error 99999");
}

TEST(SystemMessage, IsEnglishInAForeignLocale) {
  if (std::setlocale(LC_ALL, "fr_FR.UTF-8") == nullptr) GTEST_SKIP() << "no French locale on this system";
  EXPECT_EQ(systemMessage(ENOENT), "No such file or directory");
  std::setlocale(LC_ALL, "C");
}

TEST(ExceptionMessage, OfASystemErrorIsTheSystemsOwn) {
  EXPECT_EQ(exceptionMessage(std::system_error(EACCES, std::generic_category(), "open")), "Permission denied");
  EXPECT_EQ(exceptionMessage(std::system_error(EACCES, std::system_category())), "Permission denied");
  const std::error_code missing(ENOENT, std::system_category());
  EXPECT_EQ(exceptionMessage(std::filesystem::filesystem_error("rename", "/a", missing)), "No such file or directory");
}

TEST(ExceptionMessage, OfAnotherCategoryIsItsOwn) {
  const std::future_error error(std::future_errc::broken_promise);
  EXPECT_EQ(exceptionMessage(error), error.what());
  const std::system_error stream(std::make_error_code(std::io_errc::stream), "reading");
  EXPECT_EQ(exceptionMessage(stream), stream.what());
}

TEST(ExceptionMessage, OfMissingMemoryIsTheSystemsOwn) {
  EXPECT_EQ(exceptionMessage(std::bad_alloc()), "Cannot allocate memory");
  EXPECT_EQ(exceptionMessage(std::bad_array_new_length()), "Cannot allocate memory");
}

TEST(ExceptionMessage, OfAnythingElseIsWhatItSays) {
  EXPECT_EQ(exceptionMessage(std::runtime_error("out of ideas")), "out of ideas");
}

}  // namespace
}  // namespace tessaly::tests
