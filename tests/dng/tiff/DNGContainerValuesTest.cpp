#include "dng/HandMadeTIFF.h"
#include "dng/metadata/Refusal.h"
#include "dng/tiff/DNGContainer.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tessaly::tests {
namespace {

using Doubles = std::vector<double>;
using Ints = std::vector<std::int64_t>;

constexpr int tag = 700;
constexpr std::int64_t place = 100;

class FieldValues : public testing::Test {
 protected:
  // A file whose first directory has one entry of these values, which start at offset 100.
  DNGContainer containerWith(int type, std::int64_t count, const HandMadeTIFF& tiff, std::int64_t fileSize = 0) {
    HandMadeTIFF complete = tiff;
    complete.directory(8, {dngVersion(), elsewhere(tag, type, count, place)});
    complete.write(folder_ / "a.dng", fileSize);
    return DNGContainer(folder_ / "a.dng");
  }

  TemporaryFolder folder_;
};

const TIFFField* fieldOf(const DNGContainer& container) {
  return container.directories()[0].field(tag);
}

HandMadeTIFF little() {
  return HandMadeTIFF(true);
}
HandMadeTIFF big() {
  return HandMadeTIFF(false);
}

TEST_F(FieldValues, OfNothingAreNone) {
  const DNGContainer container = containerWith(4, 2, little().put(place, 1, 4).put(place + 4, 2, 4));
  EXPECT_EQ(container.numbers(nullptr), Doubles{});
  EXPECT_EQ(container.ints(nullptr), Ints{});
  EXPECT_EQ(container.firstInt(nullptr), std::nullopt);
  EXPECT_EQ(container.firstNumber(nullptr), std::nullopt);
  EXPECT_EQ(container.string(nullptr), std::nullopt);
}

TEST_F(FieldValues, AreUnsignedIntegersOfTheTypesSize) {
  for (const bool isLittle : {true, false}) {
    const HandMadeTIFF file(isLittle);
    const auto values = [&](int type, std::int64_t count, const HandMadeTIFF& tiff) {
      const DNGContainer container = containerWith(type, count, tiff);
      return container.ints(fieldOf(container));
    };
    HandMadeTIFF bytes = file;
    for (int i = 0; i < 5; ++i)
      bytes.put(place + i, 251 + i, 1);
    EXPECT_EQ(values(1, 5, bytes), (Ints{251, 252, 253, 254, 255}));
    EXPECT_EQ(values(7, 5, bytes), (Ints{251, 252, 253, 254, 255}));
    HandMadeTIFF shorts = file;
    EXPECT_EQ(values(3, 3, shorts.put(place, 0x1234, 2).put(place + 2, 65535, 2).put(place + 4, 1, 2)),
              (Ints{0x1234, 65535, 1}));
    HandMadeTIFF longs = file;
    longs.put(place, 0x12345678, 4).put(place + 4, 0xFFFFFFFF, 4);
    EXPECT_EQ(values(4, 2, longs), (Ints{0x12345678, 0xFFFFFFFF}));
    EXPECT_EQ(values(13, 2, longs), (Ints{0x12345678, 0xFFFFFFFF}));
  }
}

TEST_F(FieldValues, AreQuotientsOfRationals) {
  for (const bool isLittle : {true, false}) {
    const DNGContainer container = containerWith(5, 3,
                                                 HandMadeTIFF(isLittle)
                                                     .put(place, 1, 4)
                                                     .put(place + 4, 3, 4)
                                                     .put(place + 8, 0xFFFFFFFF, 4)
                                                     .put(place + 12, 1, 4)
                                                     .put(place + 16, 5, 4)
                                                     .put(place + 20, 0xFFFFFFFF, 4));
    EXPECT_EQ(container.numbers(fieldOf(container)), (Doubles{1.0 / 3.0, 4294967295.0, 5.0 / 4294967295.0}));
    EXPECT_EQ(container.ints(fieldOf(container)), (Ints{0, 4294967295, 0}));
  }
}

TEST_F(FieldValues, AreTruncatedTowardZero) {
  const DNGContainer container =
      containerWith(10, 2, little().put(place, -7, 4).put(place + 4, 2, 4).put(place + 8, 7, 4).put(place + 12, -2, 4));
  EXPECT_EQ(container.numbers(fieldOf(container)), (Doubles{-3.5, -3.5}));
  EXPECT_EQ(container.ints(fieldOf(container)), (Ints{-3, -3}));
}

TEST_F(FieldValues, KnowTheMostNegativeRational) {
  const DNGContainer container = containerWith(10, 1, little().put(place, INT32_MIN, 4).put(place + 4, -1, 4));
  EXPECT_EQ(container.ints(fieldOf(container)), (Ints{2147483648}));
}

TEST_F(FieldValues, RefuseAZeroDenominatorWhereverItStands) {
  const HandMadeTIFF tiff = little().put(place, 1, 4).put(place + 4, 1, 4).put(place + 8, 1, 4).put(place + 12, 0, 4);
  for (const int type : {5, 10}) {
    const DNGContainer container = containerWith(type, 2, tiff);
    const std::string zero = "Invalid DNG structure: Zero rational denominator";
    EXPECT_EQ(refusalOf([&] { return container.numbers(fieldOf(container)); }), zero);
    EXPECT_EQ(refusalOf([&] { return container.firstInt(fieldOf(container)); }), zero);
    EXPECT_EQ(refusalOf([&] { return container.firstInt(fieldOf(container)); }), zero) << "asked again";
    EXPECT_EQ(refusalOf([&] { return container.intAt(*fieldOf(container), 0); }), zero);
    EXPECT_EQ(refusalOf([&] { return container.checkNumbers(fieldOf(container)), 0; }), zero);
    EXPECT_EQ(refusalOf([&] { return container.forEachNumber(fieldOf(container), [](double) { FAIL(); }), 0; }), zero);
  }
}

TEST_F(FieldValues, AreNoNumbersOfOtherTypes) {
  for (const int type : {2, 6, 8, 9, 11, 12}) {
    const DNGContainer container = containerWith(type, 1, little().growTo(200));
    EXPECT_EQ(refusalOf([&] { return container.numbers(fieldOf(container)); }),
              "Unsupported DNG: Numeric TIFF type " + std::to_string(type));
    EXPECT_EQ(refusalOf([&] { return container.firstInt(fieldOf(container)); }),
              "Unsupported DNG: Numeric TIFF type " + std::to_string(type));
  }
}

TEST_F(FieldValues, AreNoNumbersOfOtherTypesEvenWithoutValues) {
  const DNGContainer container = containerWith(11, 0, little());
  EXPECT_EQ(refusalOf([&] { return container.ints(fieldOf(container)); }), "Unsupported DNG: Numeric TIFF type 11");
}

TEST_F(FieldValues, MayBeNone) {
  const DNGContainer container = containerWith(5, 0, little());
  EXPECT_EQ(container.numbers(fieldOf(container)), Doubles{});
  EXPECT_EQ(container.firstNumber(fieldOf(container)), std::nullopt);
}

// More values than one view holds.
TEST_F(FieldValues, MayBeMany) {
  HandMadeTIFF tiff(true);
  Ints expected;
  for (std::int64_t i = 0; i < 50'000; ++i) {
    tiff.put(place + 4 * i, i * 7919, 4);
    expected.push_back(i * 7919);
  }
  const DNGContainer container = containerWith(4, 50'000, tiff);
  EXPECT_EQ(container.ints(fieldOf(container)), expected);
  EXPECT_EQ(container.intAt(*fieldOf(container), 40'000), 40'000 * 7919);
  EXPECT_EQ(container.firstInt(fieldOf(container)), 0);
}

TEST_F(FieldValues, FindTheLastDenominatorOfMany) {
  HandMadeTIFF tiff(true);
  for (std::int64_t i = 0; i < 20'000; ++i)
    tiff.put(place + 8 * i, 1, 4).put(place + 8 * i + 4, i < 19'999 ? 1 : 0, 4);
  const DNGContainer container = containerWith(5, 20'000, tiff);
  EXPECT_EQ(refusalOf([&] { return container.firstInt(fieldOf(container)); }),
            "Invalid DNG structure: Zero rational denominator");
}

TEST_F(FieldValues, OfOverlappingRationalsAreJudgedEachByItsOwnDenominators) {
  // Read from offset 100 the denominators are 2 and 2; read from offset 104 the first is 0.
  const HandMadeTIFF tiff = HandMadeTIFF()
                                .directory(8, {dngVersion(), elsewhere(700, 5, 2, 100), elsewhere(701, 5, 1, 104)})
                                .put(100, 1, 4)
                                .put(104, 2, 4)
                                .put(108, 0, 4)
                                .put(112, 2, 4);
  tiff.write(folder_ / "b.dng");
  const DNGContainer container(folder_ / "b.dng");
  EXPECT_EQ(container.numbers(container.directories()[0].field(700)), (Doubles{0.5, 0.0}));
  EXPECT_EQ(refusalOf([&] { return container.numbers(container.directories()[0].field(701)); }),
            "Invalid DNG structure: Zero rational denominator");
}

std::optional<std::string> textIn(const DNGContainer& container) {
  return container.string(fieldOf(container));
}

HandMadeTIFF text(const std::string& bytes) {
  HandMadeTIFF tiff = big();
  for (std::size_t i = 0; i < bytes.size(); ++i)
    tiff.put(place + static_cast<std::int64_t>(i), bytes[i], 1);
  return tiff;
}

TEST_F(FieldValues, OfTextEndAtTheFirstZero) {
  EXPECT_EQ(textIn(containerWith(2, 9, text(std::string("Leica\0Q\0\0", 9)))), "Leica");
  EXPECT_EQ(textIn(containerWith(2, 5, text(std::string("\0abcd", 5)))), "");
}

TEST_F(FieldValues, OfTextMayLackTheZero) {
  EXPECT_EQ(textIn(containerWith(2, 5, text("Leica"))), "Leica");
}

TEST_F(FieldValues, OfTextAreNotTrimmed) {
  EXPECT_EQ(textIn(containerWith(2, 8, text(std::string("  12 \0 x", 8)))), "  12 ");
}

TEST_F(FieldValues, OfTextMayBeEmpty) {
  EXPECT_EQ(textIn(containerWith(2, 0, text(""))), "");
}

TEST_F(FieldValues, OfTextAreUTF8OrNothing) {
  EXPECT_EQ(textIn(containerWith(2, 6, text(std::string("\xC3\x89t\xC3\xA9\0", 6)))), "Été");
  EXPECT_EQ(textIn(containerWith(2, 6, text(std::string("\xC9t\xE9\0ab", 6)))), std::nullopt);
  EXPECT_EQ(textIn(containerWith(2, 6, text(std::string("abc\0\xFF\xFF", 6)))), "abc") << "behind the zero";
}

TEST_F(FieldValues, OfOtherTypesAreNoText) {
  EXPECT_EQ(textIn(containerWith(1, 5, text("Leica"))), std::nullopt);
  EXPECT_EQ(textIn(containerWith(7, 5, text("Leica"))), std::nullopt);
}

TEST_F(FieldValues, OfTextMayBeLongerThanOneView) {
  const std::string longText(100'000, 'x');
  EXPECT_EQ(textIn(containerWith(2, 100'000, text(longText))), longText);
}

TEST_F(FieldValues, OfAnyRangeAreCheckedFirst) {
  const DNGContainer container = containerWith(4, 2, little().growTo(200));
  EXPECT_EQ(container.uint(196, 4), 0);
  EXPECT_EQ(refusalOf([&] { return container.uint(197, 4); }), "Incomplete DNG file: TIFF field at 197, length 4");
  EXPECT_EQ(refusalOf([&] { return container.uint(-1, 4); }), "Incomplete DNG file: TIFF field at -1, length 4");
  const auto check = [&](std::int64_t offset, std::int64_t length) {
    return refusalOf([&] { return container.check(offset, length), 0; });
  };
  EXPECT_EQ(check(0, 200), "");
  EXPECT_EQ(check(200, 0), "");
  EXPECT_EQ(check(201, 0), "Incomplete DNG file: TIFF field at 201, length 0");
  EXPECT_EQ(check(0, -1), "Incomplete DNG file: TIFF field at 0, length -1");
  EXPECT_EQ(check(INT64_MAX, INT64_MAX),
            "Incomplete DNG file: TIFF field at 9223372036854775807, length 9223372036854775807");
}

TEST_F(FieldValues, OfUpToEightBytesFollowTheByteOrder) {
  const DNGContainer ii = containerWith(4, 2, little().put(place, 0x0102030405060708, 8));
  EXPECT_EQ(ii.uint(place, 1), 0x08);
  EXPECT_EQ(ii.uint(place, 3), 0x060708);
  EXPECT_EQ(ii.uint(place, 8), 0x0102030405060708);
  const DNGContainer mm = containerWith(4, 2, big().put(place, 0x0102030405060708, 8));
  EXPECT_EQ(mm.uint(place, 1), 0x01);
  EXPECT_EQ(mm.uint(place, 3), 0x010203);
  EXPECT_EQ(mm.uint(place, 8), 0x0102030405060708);
}

TEST_F(FieldValues, OfMoreThan63BitsOverflow) {
  const DNGContainer container = containerWith(4, 2, big().put(place, INT64_MAX, 8).put(place + 8, INT64_MIN, 8));
  EXPECT_EQ(container.uint(place, 8), INT64_MAX);
  EXPECT_EQ(refusalOf([&] { return container.uint(place + 8, 8); }), "Invalid DNG structure: Integer overflow");
}

TEST_F(FieldValues, OfAFileThatShrankAreTruncated) {
  HandMadeTIFF tiff = little();
  const DNGContainer container = containerWith(4, 10'000, tiff.growTo(place + 40'000));
  std::filesystem::resize_file(folder_ / "a.dng", 20'000);
  EXPECT_EQ(refusalOf([&] { return container.ints(fieldOf(container)); }),
            "Incomplete DNG file: TIFF field at 100, length 40000");
}

}  // namespace
}  // namespace tessaly::tests
