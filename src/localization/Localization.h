// Every text that the user reads, in each language of the interface. The English text is the key.
//
// Pure apart from reading the language preference; safe from any thread.
#pragma once

#include "dng/DNGError.h"
#include "preferences/AppLanguage.h"

#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace tessaly {

namespace Localization {

using RejectionReason = tessaly::RejectionReason;

/// One text in every language; placeholders are the same, in the same order, in all of them.
struct Entry {
  /// As many texts as there are languages, in the order of `spokenLanguages`.
  template <typename... Texts>
  requires(sizeof...(Texts) == languageCount) constexpr Entry(Texts... each) : texts{each...} {}

  [[nodiscard]] constexpr std::string_view in(AppLanguage language) const { return texts[languageIndex(language)]; }
  [[nodiscard]] constexpr std::string_view english() const { return in(AppLanguage::english); }

  std::array<std::string_view, languageCount> texts;
};

/// The texts that other programs know by their order: it is fixed.
[[nodiscard]] std::span<const Entry> entries();

/// The texts that came later, in any order. No English text stands in both tables.
[[nodiscard]] std::span<const Entry> additions();

/// The first row of either table that fits; nothing when none does.
[[nodiscard]] const Entry* findEntry(const std::function<bool(const Entry&)>& fits);

inline constexpr std::string_view supportEmail = "support@tessaly.example";

/// The language of the interface: the one chosen for this run, else the preference, resolved; never `system`.
[[nodiscard]] AppLanguage language();

/// Chooses the language for this run of the program (a command line's --language); nothing: the preference decides.
void setLanguageOverride(std::optional<AppLanguage> language);

/// The text in the given language (absent: the interface's); a text that is not in the table is returned unchanged.
[[nodiscard]] std::string text(std::string_view english, std::optional<AppLanguage> language = std::nullopt);

/// The English key of a text given in any language; a text that is not in the table is unchanged.
[[nodiscard]] std::string original(std::string_view text);

/// "<filename>: <message of the reason> <help line>".
[[nodiscard]] std::string rejectionMessage(RejectionReason reason, std::string_view filename,
                                           std::optional<AppLanguage> language = std::nullopt);

/// What every rejection message ends with: where to ask for help.
[[nodiscard]] std::string helpLine(AppLanguage language);

using FormatArgument = std::variant<std::int64_t, std::string>;

/// Puts the arguments into %d, %@ and %% of an already translated format, in one pass: an argument is never expanded.
[[nodiscard]] std::string format(std::string_view format, std::initializer_list<FormatArgument> arguments);

/// An English text that may have been composed from one of the table's formats ("Reading IMG_1.dng"), in the given
/// language (absent: the interface's). Reasons and progress messages are kept in English and shown through this.
[[nodiscard]] std::string composedText(std::string_view english, std::optional<AppLanguage> language = std::nullopt);

}  // namespace Localization

/// The text in the interface's language.
[[nodiscard]] std::string L(std::string_view english);

/// The format in the interface's language, with its arguments: whole numbers for %d, texts for %@.
[[nodiscard]] std::string LF(std::string_view english, std::initializer_list<Localization::FormatArgument> arguments);

/// What the user is told about an error: for one that belongs to a file its name and the rejection message, or what the
/// place of its copy refused; for any other DNGError its technical description; for every other exception the system's
/// own words in that language.
[[nodiscard]] std::string errorDescription(const std::exception& error,
                                           std::optional<AppLanguage> language = std::nullopt);

}  // namespace tessaly
