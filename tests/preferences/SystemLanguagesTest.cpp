#include "preferences/SystemLanguages.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <map>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> languagesOf(const std::map<std::string, std::string>& variables) {
  for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"})
    unsetenv(name);
  for (const auto& [name, value] : variables)
    setenv(name.c_str(), value.c_str(), 1);
  return systemLanguages();
}

TEST(SystemLanguages, AreTheListFirst) {
  EXPECT_THAT(languagesOf({{"LANGUAGE", "de_CH:fr_FR.UTF-8::zh_TW"}, {"LC_ALL", "en_US"}, {"LANG", "en_US"}}),
              ElementsAre("de-CH", "fr-FR", "zh-TW"));
}

TEST(SystemLanguages, AreElseTheLocaleOfMessages) {
  EXPECT_THAT(languagesOf({{"LC_ALL", "fr_FR"}, {"LC_MESSAGES", "zh_CN"}, {"LANG", "en_US"}}), ElementsAre("fr-FR"));
  EXPECT_THAT(languagesOf({{"LC_MESSAGES", "zh_CN"}, {"LANG", "en_US"}}), ElementsAre("zh-CN"));
  EXPECT_THAT(languagesOf({{"LANGUAGE", ""}, {"LC_ALL", ""}, {"LANG", "en_US"}}), ElementsAre("en-US"));
  EXPECT_THAT(languagesOf({{"LC_ALL", "C"}, {"LANG", "fr_FR"}}), IsEmpty());
}

TEST(SystemLanguages, AreNoneWithoutVariables) {
  EXPECT_THAT(languagesOf({}), IsEmpty());
}

TEST(LanguageTag, IsTheLocalesNameWithoutWhatIsNoLanguage) {
  EXPECT_EQ(languageTag("fr_CH.UTF-8@euro"), "fr-CH");
  EXPECT_EQ(languageTag("sr@latin"), "sr");
  EXPECT_EQ(languageTag("zh_Hant_TW"), "zh-Hant-TW");
  EXPECT_EQ(languageTag("fr-FR"), "fr-FR");
  EXPECT_EQ(languageTag("FR_fr"), "fr-fr");
  EXPECT_EQ(languageTag("fra_FR"), "fra-FR");
}

TEST(LanguageTag, IsEmptyForWhatNamesNoLanguage) {
  for (const char* locale : {"", "C", "POSIX", "C.UTF-8", "french", "français", "f1", "_FR", ".UTF-8"})
    EXPECT_EQ(languageTag(locale), "") << locale;
}

}  // namespace
}  // namespace tessaly
