#include "localization/Shown.h"
#include "preferences/AppPreferences.h"

#include <gtest/gtest.h>

namespace tessaly::Localization {
namespace {

using enum AppLanguage;

constexpr const char* backUp =
    "Back up profiles or move them to another Mac. Imported copies keep their camera identity.";

class Shown : public testing::Test {
 protected:
  void TearDown() override { setLanguageOverride(std::nullopt); }
};

TEST_F(Shown, SaysComputerWhereTheTableSaysMac) {
  EXPECT_EQ(shownText(backUp, english),
            "Back up profiles or move them to another computer. Imported copies keep their camera identity.");
  EXPECT_EQ(shownText(backUp, chinese), text(backUp, chinese));
  EXPECT_EQ(text(backUp, english), backUp);
}

TEST_F(Shown, NamesNoMakerOfComputersAnywhere) {
  for (const auto table : {entries(), additions()})
    for (const Entry& entry : table)
      for (const AppLanguage language : {english, chinese, french})
        EXPECT_EQ(shownText(entry.english(), language).find("Mac"), std::string::npos) << entry.english();
}

TEST_F(Shown, LeavesWhatNeedsNoOtherWording) {
  for (const AppLanguage language : {english, chinese, french}) {
    EXPECT_EQ(shownText("Cancel", language), text("Cancel", language));
    EXPECT_EQ(shownText("no key", language), "no key");
  }
}

TEST_F(Shown, FindsTheKeyOfWhatIsShown) {
  for (const auto table : {entries(), additions()})
    for (const Entry& entry : table)
      for (const AppLanguage language : {english, chinese, french}) {
        EXPECT_EQ(shownOriginal(shownText(entry.english(), language)), entry.english());
        EXPECT_EQ(shownOriginal(text(entry.english(), language)), entry.english());
      }
  EXPECT_EQ(shownOriginal("no key"), "no key");
}

TEST_F(Shown, SetsFrenchWithSpacesThatNoLineBreaksAt) {
  EXPECT_TRUE(shownText("Column X coordinate filled. Confirm it, then click Add Full Column.", french)
                  .ends_with("«\u00A0Ajouter une colonne entière\u00A0»."));
  for (const auto table : {entries(), additions()})
    for (const Entry& entry : table)
      for (const char* breakable : {"« ", " »", " :", " ;", " !", " ?", " %%"})
        EXPECT_EQ(shownText(entry.english(), french).find(breakable), std::string::npos) << entry.in(french);
}

TEST_F(Shown, SetsFrenchDecimalsWithAComma) {
  setLanguageOverride(french);
  const char* reason = "Fixed column anomaly 12.5σ; same sign in 97% of frames; repeated across 2 exposure groups";
  EXPECT_NE(composedText(reason).find("12.5σ"), std::string::npos);
  const ShownWording shown;
  EXPECT_NE(composedText(reason).find("12,5σ"), std::string::npos);
  EXPECT_NE(composedText(reason).find("97\u00A0%"), std::string::npos);
}

TEST_F(Shown, CountsInFrenchWithSingulars) {
  const char* ended = "Complete: %d succeeded, %d failed, %d skipped";
  setLanguageOverride(french);
  EXPECT_EQ(LF(ended, {2, 1, 0}), "Terminé : 2 réussis, 1 échecs, 0 ignorés");
  const ShownWording shown;
  EXPECT_EQ(LF(ended, {2, 1, 0}), "Terminé\u00A0: 2 réussis, 1 échec, 0 ignoré");
  EXPECT_EQ(LF(ended, {1, 11, 21}), "Terminé\u00A0: 1 réussi, 11 échecs, 21 ignorés");
}

TEST_F(Shown, LeavesNamesAsTheyAre) {
  setLanguageOverride(french);
  const ShownWording shown;
  EXPECT_EQ(LF("Default: %@", {"/a « b » : 1 pixels/1.5"}), "Par défaut\u00A0: /a « b » : 1 pixels/1.5");
}

TEST_F(Shown, HoldsOnlyAsLongAsItIsWanted) {
  setLanguageOverride(english);
  {
    const ShownWording outer;
    const ShownWording inner;
    EXPECT_NE(L(backUp), backUp);
  }
  EXPECT_EQ(L(backUp), backUp);
}

}  // namespace
}  // namespace tessaly::Localization
