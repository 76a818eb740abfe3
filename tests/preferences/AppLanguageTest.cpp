#include "preferences/AppLanguage.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

TEST(AppLanguage, HasFourRawValuesInOrder) {
  EXPECT_EQ(rawValue(AppLanguage::system), "system");
  EXPECT_EQ(rawValue(AppLanguage::english), "en");
  EXPECT_EQ(rawValue(AppLanguage::chinese), "zh-Hans");
  EXPECT_EQ(rawValue(AppLanguage::french), "fr");
  EXPECT_LT(AppLanguage::system, AppLanguage::english);
  EXPECT_LT(AppLanguage::english, AppLanguage::chinese);
  EXPECT_LT(AppLanguage::chinese, AppLanguage::french);
}

TEST(AppLanguage, IsReadFromItsRawValueOnly) {
  for (const AppLanguage language :
       {AppLanguage::system, AppLanguage::english, AppLanguage::chinese, AppLanguage::french}) {
    EXPECT_EQ(appLanguage(rawValue(language)), language);
  }
  for (const char* other : {"", "EN", "en-GB", "zh", "zh-hans", "fr ", "System"}) {
    EXPECT_FALSE(appLanguage(other)) << other;
  }
}

TEST(AppLanguage, IsTypedAsItIsStored) {
  EXPECT_EQ(languageTagChoice(), "en|zh-Hans|fr");
  for (const std::string& tag : languageTags())
    EXPECT_EQ(rawValue(appLanguage(tag).value()), tag);
}

TEST(AppLanguage, IsToldWhole) {
  for (const SpokenLanguage& each : spokenLanguages) {
    EXPECT_EQ(spoken(each.language).tag, each.tag);
    EXPECT_TRUE(each.tag.starts_with(each.prefix)) << each.tag;
    EXPECT_STRNE(each.ownName, "") << each.tag;
  }
}

TEST(AppLanguage, CalledSystemIsNoneOfThem) {
  EXPECT_THROW(static_cast<void>(languageIndex(AppLanguage::system)), std::logic_error);
  EXPECT_THROW(static_cast<void>(spoken(static_cast<AppLanguage>(languageCount + 1))), std::logic_error);
}

TEST(AppLanguage, ThatIsChosenIgnoresThePreferredOnes) {
  EXPECT_EQ(resolved(AppLanguage::chinese, {"fr-FR", "en"}), AppLanguage::chinese);
  EXPECT_EQ(resolved(AppLanguage::english, {}), AppLanguage::english);
}

TEST(AppLanguage, OfTheSystemIsTheFirstPreferredOneThatIsSpoken) {
  EXPECT_EQ(resolved(AppLanguage::system, {"de-DE", "fr-FR", "en-US"}), AppLanguage::french);
  EXPECT_EQ(resolved(AppLanguage::system, {"en-GB", "fr-FR"}), AppLanguage::english);
  EXPECT_EQ(resolved(AppLanguage::system, {"zh-Hant-TW"}), AppLanguage::chinese);
  EXPECT_EQ(resolved(AppLanguage::system, {"frr"}), AppLanguage::french) << "a plain prefix, not a language";
}

TEST(AppLanguage, OfASystemThatSpeaksNoneOfThemIsEnglish) {
  EXPECT_EQ(resolved(AppLanguage::system, {"pt-BR"}), AppLanguage::english);
  EXPECT_EQ(resolved(AppLanguage::system, {}), AppLanguage::english);
  EXPECT_EQ(resolved(AppLanguage::system, {"ZH-Hans", "FR"}), AppLanguage::english) << "prefixes are case-sensitive";
  EXPECT_EQ(resolved(AppLanguage::system, {"C"}), AppLanguage::english);
}

}  // namespace
}  // namespace tessaly
