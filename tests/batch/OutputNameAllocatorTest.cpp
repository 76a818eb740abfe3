#include "batch/OutputNameAllocator.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace tessaly {
namespace {

constexpr auto skip = ExistingOutputPolicy::skip;
constexpr auto numberedCopy = ExistingOutputPolicy::numberedCopy;

/// The numbered name of a source whose own name is taken.
std::optional<std::string> numbered(const std::string& name) {
  return OutputNameAllocator({name}).allocate(name, numberedCopy);
}

TEST(OutputNameAllocator, GivesAFreeNameUnchanged) {
  OutputNameAllocator names({});
  EXPECT_EQ(names.allocate("L1000123.DNG", skip), "L1000123.DNG");
  EXPECT_EQ(names.allocate("l1000124.dng", numberedCopy), "l1000124.dng");
}

TEST(OutputNameAllocator, SkipsATakenNameWhateverItsLetterCase) {
  OutputNameAllocator names({"a.dng"});
  EXPECT_EQ(names.allocate("A.DNG", skip), std::nullopt);
  EXPECT_EQ(names.allocate("a.dng", skip), std::nullopt);
}

TEST(OutputNameAllocator, LeavesTheNamesAloneWhenItSkips) {
  OutputNameAllocator names({"a.dng"});
  EXPECT_EQ(names.allocate("a.dng", skip), std::nullopt);
  EXPECT_EQ(names.allocate("a-2.dng", skip), "a-2.dng");
}

TEST(OutputNameAllocator, NumbersCopiesFromTwoInTheCaseOfTheSourceName) {
  OutputNameAllocator names({"a.dng"});
  EXPECT_EQ(names.allocate("A.DNG", numberedCopy), "A-2.DNG");
  EXPECT_EQ(names.allocate("A.DNG", numberedCopy), "A-3.DNG");
}

TEST(OutputNameAllocator, PassesOverNumbersThatAreTaken) {
  OutputNameAllocator names({"A-2.DNG", "a.dng", "a-4.dng"});
  EXPECT_EQ(names.allocate("a.dng", numberedCopy), "a-3.dng");
  EXPECT_EQ(names.allocate("a.dng", numberedCopy), "a-5.dng");
}

TEST(OutputNameAllocator, ShortensTheStemWhereTheNumberMakesTheNameTooLong) {
  EXPECT_EQ(numbered(std::string(247, 'a') + ".dng"), std::string(247, 'a') + "-2.dng") << "251 bytes have room";
  EXPECT_EQ(numbered(std::string(251, 'a') + ".dng"), std::string(249, 'a') + "-2.dng");
  EXPECT_EQ(numbered(std::string(255, 'a')), std::string(253, 'a') + "-2");
}

TEST(OutputNameAllocator, ShortensAtACharactersBoundary) {
  std::string name(247, 'a');
  name += "é.dng";  // 253 bytes
  name.insert(0, "aa");
  EXPECT_EQ(numbered(name), std::string(249, 'a') + "-2.dng") << "not half of the é";
  EXPECT_EQ(numbered(std::string(247, 'a') + "\xF0\x9F\x93\xB7.dng"), std::string(247, 'a') + "-2.dng");
}

TEST(OutputNameAllocator, GivesShortenedNamesOnlyOnce) {
  OutputNameAllocator names({});
  const std::string first = std::string(249, 'a') + "b1.dng";
  const std::string second = std::string(249, 'a') + "b2.dng";
  for (const std::string& name : {first, second})
    EXPECT_EQ(names.allocate(name, numberedCopy), name);
  EXPECT_EQ(names.allocate(first, numberedCopy), std::string(249, 'a') + "-2.dng");
  EXPECT_EQ(names.allocate(second, numberedCopy), std::string(249, 'a') + "-3.dng");
}

TEST(OutputNameAllocator, LeavesAnExtensionAloneThatTakesAllTheRoom) {
  const std::string extension(253, 'x');
  EXPECT_EQ(numbered("a." + extension), "a-2." + extension);
}

TEST(OutputNameAllocator, NeverGivesTheSameNameTwice) {
  OutputNameAllocator names({});
  EXPECT_EQ(names.allocate("a.dng", numberedCopy), "a.dng");
  EXPECT_EQ(names.allocate("A.dng", numberedCopy), "A-2.dng");
  EXPECT_EQ(names.allocate("a-2.DNG", numberedCopy), "a-2-2.DNG");
}

TEST(OutputNameAllocator, TreatsTwoSourcesThatDifferInCaseAsACollision) {
  OutputNameAllocator names({});
  EXPECT_EQ(names.allocate("a.dng", skip), "a.dng");
  EXPECT_EQ(names.allocate("A.dng", skip), std::nullopt);
}

TEST(OutputNameAllocator, PutsTheNumberBeforeTheLastExtensionOnly) {
  EXPECT_EQ(numbered("img.old.dng"), "img.old-2.dng");
  EXPECT_EQ(numbered("L1000123.DNG"), "L1000123-2.DNG");
}

TEST(OutputNameAllocator, AddsNoDotToANameWithoutExtension) {
  EXPECT_EQ(numbered("notes"), "notes-2");
  EXPECT_EQ(numbered("img."), "img-2");
  EXPECT_EQ(numbered("img.."), "img.-2");
}

TEST(OutputNameAllocator, TakesALeadingDotForPartOfTheStem) {
  EXPECT_EQ(numbered(".dng"), ".dng-2");
  EXPECT_EQ(numbered(".a.dng"), ".a-2.dng");
}

TEST(OutputNameAllocator, LowersLettersOfEveryScript) {
  EXPECT_EQ(OutputNameAllocator({"été ÀÉÎ.dng"}).allocate("ÉTÉ àéî.DNG", skip), std::nullopt);
  EXPECT_EQ(OutputNameAllocator({"ЖУК.dng"}).allocate("жук.dng", skip), std::nullopt);
}

TEST(OutputNameAllocator, DoesNotNormalise) {
  const std::string composed = "\u00E9.dng";
  const std::string decomposed = "e\u0301.dng";
  EXPECT_EQ(OutputNameAllocator({composed}).allocate(decomposed, skip), decomposed);
}

TEST(OutputNameAllocator, FollowsNoLanguageInLowering) {
  EXPECT_EQ(OutputNameAllocator({"I.dng"}).allocate("i.dng", skip), std::nullopt);
  EXPECT_EQ(OutputNameAllocator({"I.dng"}).allocate("\u0131.dng", skip), "\u0131.dng")
      << "dotless i is a letter of its own";
}

TEST(OutputNameAllocator, KeepsBytesThatAreNotUTF8) {
  EXPECT_EQ(numbered("\xFF\xFE.dng"), "\xFF\xFE-2.dng");
  EXPECT_EQ(OutputNameAllocator({"\xFF.DNG"}).allocate("\xFF.dng", skip), std::nullopt);
  EXPECT_EQ(OutputNameAllocator({"\xFF.dng"}).allocate("\xFE.dng", skip), "\xFE.dng");
}

}  // namespace
}  // namespace tessaly
