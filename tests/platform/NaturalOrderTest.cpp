#include "platform/NaturalOrder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <clocale>
#include <filesystem>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using testing::ElementsAre;

std::vector<std::filesystem::path> sorted(std::vector<std::filesystem::path> paths) {
  sortByFileName(paths);
  return paths;
}

TEST(NaturalOrder, ComparesEmbeddedNumbersByValue) {
  const NaturalOrder order;
  EXPECT_LT(order.compare("IMG_9.dng", "IMG_10.dng"), 0);
  EXPECT_GT(order.compare("IMG_100.dng", "IMG_20.dng"), 0);
  EXPECT_LT(order.compare("a2b10", "a10b2"), 0);
}

TEST(NaturalOrder, IgnoresCaseUntilNothingElseDiffers) {
  const NaturalOrder order;
  EXPECT_LT(order.compare("Body 2", "body 10"), 0);
  EXPECT_LT(order.compare("apple", "Banana"), 0);
  EXPECT_LT(order.compare("Apple", "apple"), 0) << "equal in the order of the alphabet: by bytes";
}

TEST(NaturalOrder, DistinguishesAccentsAfterLetters) {
  const NaturalOrder order;
  EXPECT_LT(order.compare("cote", "côte"), 0);
  EXPECT_LT(order.compare("côte", "cotf"), 0);
}

TEST(NaturalOrder, ComparesNumbersOfEqualValueByTheirBytes) {
  const NaturalOrder order;
  EXPECT_LT(order.compare("IMG_009.dng", "IMG_9.dng"), 0);
  EXPECT_LT(order.compare("IMG_09.dng", "IMG_9.dng"), 0);
  EXPECT_LT(order.compare("IMG_9.dng", "IMG_0010.dng"), 0);
}

TEST(NaturalOrder, GivesZeroOnlyForTheSameBytes) {
  const NaturalOrder order;
  EXPECT_EQ(order.compare("IMG_1.dng", "IMG_1.dng"), 0);
  EXPECT_EQ(order.compare("", ""), 0);
  EXPECT_NE(order.compare("IMG_1.dng", "img_1.dng"), 0);
}

TEST(NaturalOrder, AcceptsBytesThatAreNotUTF8) {
  const NaturalOrder order;
  EXPECT_NE(order.compare("IMG_\xFF.dng", "IMG_\xFE.dng"), 0);
  EXPECT_EQ(order.compare("\xC3", "\xC3"), 0);
}

TEST(NaturalOrder, ComparesNumbersOfHundredsOfDigits) {
  const NaturalOrder order;
  const std::string large(250, '9');
  EXPECT_LT(order.compare("IMG_8.dng", "IMG_" + large + ".dng"), 0);
}

TEST(NaturalOrder, DoesNotDependOnTheProcessLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  std::setlocale(LC_ALL, "C");
  const int inC = NaturalOrder().compare("äpfel", "zebra");
  std::setlocale(LC_ALL, "");
  EXPECT_EQ(NaturalOrder().compare("äpfel", "zebra"), inC);
  EXPECT_LT(inC, 0);
  std::setlocale(LC_ALL, before.c_str());
}

TEST(SortByFileName, PutsNineBeforeTen) {
  EXPECT_THAT(sorted({"/a/IMG_10.dng", "/a/IMG_9.dng", "/a/img_1.dng"}),
              ElementsAre("/a/img_1.dng", "/a/IMG_9.dng", "/a/IMG_10.dng"));
}

TEST(SortByFileName, LooksAtTheLastComponentOnly) {
  EXPECT_THAT(sorted({"/a/2.dng", "/b/1.dng"}), ElementsAre("/b/1.dng", "/a/2.dng"));
}

TEST(SortByFileName, KeepsTheOrderOfEqualNames) {
  EXPECT_THAT(sorted({"/z/1.dng", "/a/1.dng", "/m/1.dng"}), ElementsAre("/z/1.dng", "/a/1.dng", "/m/1.dng"));
}

}  // namespace
}  // namespace tessaly
