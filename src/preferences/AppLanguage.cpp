#include "preferences/AppLanguage.h"

#include "preferences/SystemLanguages.h"

namespace tessaly {
namespace {

constexpr std::string_view systemValue = "system";

std::optional<AppLanguage> meantBy(std::string_view systemTag) {
  for (const SpokenLanguage& known : spokenLanguages) {
    if (systemTag.starts_with(known.prefix)) return known.language;
  }
  return std::nullopt;
}

}  // namespace

std::string_view rawValue(AppLanguage language) {
  return language == AppLanguage::system ? systemValue : spoken(language).tag;
}

std::optional<AppLanguage> appLanguage(std::string_view value) {
  for (const AppLanguage language : languageChoices) {
    if (rawValue(language) == value) return language;
  }
  return std::nullopt;
}

std::vector<std::string> languageTags() {
  std::vector<std::string> tags;
  tags.reserve(languageCount);
  for (const SpokenLanguage& known : spokenLanguages)
    tags.emplace_back(known.tag);
  return tags;
}

std::string languageTagChoice() {
  std::string choice;
  for (const std::string& tag : languageTags())
    choice += (choice.empty() ? "" : "|") + tag;
  return choice;
}

AppLanguage resolved(AppLanguage language, const std::vector<std::string>& preferred) {
  if (language != AppLanguage::system) return language;
  for (const std::string& tag : preferred) {
    if (const auto match = meantBy(tag)) return *match;
  }
  return AppLanguage::english;
}

AppLanguage resolved(AppLanguage language) {
  return language == AppLanguage::system ? resolved(language, systemLanguages()) : language;
}

}  // namespace tessaly
