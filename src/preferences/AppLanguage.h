// The languages of the interface and how the system's preferred languages choose one.
#pragma once

#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

enum class AppLanguage { system, english, chinese, french };

/// What has to be known of a language before anything is said in it.
struct SpokenLanguage {
  AppLanguage language;
  std::string_view tag;          ///< stored and typed
  std::string_view prefix;       ///< of the system's tags that mean it
  const char* ownName;           ///< UTF-8
  const char* toolkitCatalogue;  ///< of the window toolkit's texts; empty for the language that they are written in
  std::string_view sentenceGap;  ///< between two sentences
};

/// The one list of languages. Texts stand in its order and are as many.
inline constexpr std::array spokenLanguages{
    SpokenLanguage{AppLanguage::english, "en", "en", "English", "", " "},
    SpokenLanguage{AppLanguage::chinese, "zh-Hans", "zh", "简体中文", "qtbase_zh_CN", ""},
    SpokenLanguage{AppLanguage::french, "fr", "fr", "Français", "qtbase_fr", " "},
};
inline constexpr std::size_t languageCount = spokenLanguages.size();

/// The place of a language in the list; `system` is none. A case without a place does not compile.
[[nodiscard]] constexpr std::size_t languageIndex(AppLanguage language) {
  switch (language) {
    case AppLanguage::system:
      break;
    case AppLanguage::english:
      return 0;
    case AppLanguage::chinese:
      return 1;
    case AppLanguage::french:
      return 2;
  }
  throw std::logic_error("Not a language");
}

[[nodiscard]] constexpr const SpokenLanguage& spoken(AppLanguage language) {
  return spokenLanguages.at(languageIndex(language));
}

/// What the user can choose: to follow the system, or one of the languages.
inline constexpr auto languageChoices = [] {
  std::array<AppLanguage, languageCount + 1> choices{AppLanguage::system};
  for (std::size_t i = 0; i < languageCount; ++i) {
    choices[i + 1] = spokenLanguages[i].language;
    if (languageIndex(choices[i + 1]) != i) throw std::logic_error("The list is in another order");
  }
  return choices;
}();

/// The raw value that is stored: the language's tag, or "system".
[[nodiscard]] std::string_view rawValue(AppLanguage language);
[[nodiscard]] std::optional<AppLanguage> appLanguage(std::string_view rawValue);

/// The tags of all languages, as they are typed.
[[nodiscard]] std::vector<std::string> languageTags();

/// The same as help texts show them: "en|zh-Hans|…".
[[nodiscard]] std::string languageTagChoice();

/// `language` itself, or for `system` the first of the preferred languages (the system's, where none are given) that
/// the interface speaks, else English.
[[nodiscard]] AppLanguage resolved(AppLanguage language, const std::vector<std::string>& preferred);
[[nodiscard]] AppLanguage resolved(AppLanguage language);

}  // namespace tessaly
