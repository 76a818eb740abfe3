// How the window words a text: as its row in the tables says, but for the few that are worded otherwise for readers
// (a computer need not be a Mac), and in French as it is set: no-break spaces, decimal commas, singulars.
//
// The tables, and with them `text`, `L` and `LF` elsewhere, stay what they are. Safe from any thread.
#pragma once

#include "localization/Localization.h"

#include <string>
#include <string_view>
#include <vector>

namespace tessaly::Localization {

/// The text as it is shown in the given language (absent: the interface's).
[[nodiscard]] std::string shownText(std::string_view english, std::optional<AppLanguage> language = std::nullopt);

/// The English key of a text that is shown, or stands in a table, in any of the three languages; else the text.
[[nodiscard]] std::string shownOriginal(std::string_view text);

/// A format as `shownText` gives it, with one value a placeholder: French counts agree with their nouns ("1 échec").
[[nodiscard]] std::string fillShown(std::string_view format, const std::vector<std::string>& values,
                                    AppLanguage language);

/// While one of these lives, `L`, `LF` and `composedText` of its thread give texts as they are shown.
class ShownWording {
 public:
  ShownWording();
  ~ShownWording();
  ShownWording(const ShownWording&) = delete;
  ShownWording& operator=(const ShownWording&) = delete;

  [[nodiscard]] static bool isOn();
};

}  // namespace tessaly::Localization
