#include "localization/Format.h"
#include "localization/Localization.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaly::Localization {
namespace {

using testing::ElementsAre;

TEST(Format, PutsNumbersAndTextsInTheirPlaces) {
  EXPECT_EQ(format("%d of %d in “%@”", {3, -4, "a"}), "3 of -4 in “a”");
  EXPECT_EQ(format("%d", {INT64_MIN}), "-9223372036854775808");
  EXPECT_EQ(format("nothing", {}), "nothing");
  EXPECT_EQ(format("", {}), "");
}

TEST(Format, InsertsATextAsDataOnly) {
  EXPECT_EQ(format("Default: %@", {"/photos/%d/%@/100%%"}), "Default: /photos/%d/%@/100%%");
  EXPECT_EQ(format("%@ and %@", {"%@", "second"}), "%@ and second");
  EXPECT_EQ(format("%@ %d", {"%d", 7}), "%d 7");
}

TEST(Format, MakesOnePercentSignOfTwo) {
  EXPECT_EQ(format("≥ %d%%.", {98}), "≥ 98%.");
  EXPECT_EQ(format("≥ %d %% inclus", {98}), "≥ 98 % inclus");
  EXPECT_EQ(format("%%d", {}), "%d");
  EXPECT_EQ(format("%%%d", {5}), "%5");
}

TEST(Format, KeepsAPercentSignThatIsNoPlaceholder) {
  EXPECT_EQ(format("100 % sure %", {}), "100 % sure %");
  EXPECT_EQ(format("%x %-", {}), "%x %-");
}

TEST(Format, TakesARoundedNumberAsText) {
  EXPECT_EQ(format("%.1fσ in %.0f%% of %+.1f", {"12.5", "97", "-3.0"}), "12.5σ in 97% of -3.0");
}

TEST(Format, ListsItsPlaceholdersInOrder) {
  EXPECT_THAT(formatParts("a %d b %@%% %+.1f").placeholders, ElementsAre("%d", "%@", "%+.1f"));
  EXPECT_THAT(formatParts("a %d b %@%% %+.1f").literals, ElementsAre("a ", " b ", "% ", ""));
}

TEST(Format, FindsTheTextsThatWerePutIn) {
  EXPECT_THAT(*matchFormat("%d of %d included", "3 of 40 included"), ElementsAre("3", "40"));
  EXPECT_THAT(*matchFormat("Saved “%@”: %d pixels", "Saved “x”: 1”: 2 pixels"), ElementsAre("x”: 1", "2"));
  EXPECT_THAT(*matchFormat("Reading %@", "Reading "), ElementsAre(""));
  EXPECT_THAT(*matchFormat("%.0f%%", "97%"), ElementsAre("97"));
  EXPECT_TRUE(matchFormat("same", "same"));
}

TEST(Format, DoesNotMatchATextOfAnotherForm) {
  EXPECT_FALSE(matchFormat("%d of %d included", "3 of 40 included."));
  EXPECT_FALSE(matchFormat("%d of %d included", "three of 40 included"));
  EXPECT_FALSE(matchFormat("%d of %d included", "3.5 of 40 included"));
  EXPECT_FALSE(matchFormat("%.1f", "1."));
  EXPECT_FALSE(matchFormat("%.1f", "+"));
  EXPECT_FALSE(matchFormat("%.1f", "1.2.3"));
  EXPECT_FALSE(matchFormat("Reading %@", "reading x"));
  EXPECT_FALSE(matchFormat("same", "same "));
}

TEST(Format, HasTheSamePlaceholdersInEveryLanguage) {
  for (const auto table : {entries(), additions()}) {
    for (const Entry& entry : table) {
      for (const std::string_view text : entry.texts)
        EXPECT_EQ(formatParts(text).placeholders, formatParts(entry.english()).placeholders) << text;
    }
  }
}

}  // namespace
}  // namespace tessaly::Localization
