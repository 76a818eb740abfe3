// The interface languages and how the system's preferred languages choose one.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

enum class AppLanguage { system, english, chinese, french };

/// The raw value that is stored and typed: "system", "en", "zh-Hans", "fr".
[[nodiscard]] std::string_view rawValue(AppLanguage language);
[[nodiscard]] std::optional<AppLanguage> appLanguage(std::string_view rawValue);

/// The languages the user prefers, most preferred first, as tags such as "fr-CH".
[[nodiscard]] std::vector<std::string> preferredLanguages();

/// `language` itself, or for `system` the first of the preferred languages that the interface speaks, else English.
[[nodiscard]] AppLanguage resolved(AppLanguage language, const std::vector<std::string>& preferred);
[[nodiscard]] AppLanguage resolved(AppLanguage language);

}  // namespace tessaly
