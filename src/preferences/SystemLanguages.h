// The languages that the user prefers, as the system's locale variables tell.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// Most preferred first, as tags such as "fr-CH": the list in LANGUAGE, else the locale of messages (LC_ALL,
/// LC_MESSAGES or LANG, the first that is set). What names no language ("C", "POSIX") is left out.
[[nodiscard]] std::vector<std::string> systemLanguages();

/// The tag of a locale's name: "fr-CH" of "fr_CH.UTF-8@euro"; empty when it names no language.
[[nodiscard]] std::string languageTag(std::string_view locale);

}  // namespace tessaly
