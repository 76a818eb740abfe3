#include "localization/Shown.h"

#include "localization/Format.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tessaly::Localization {
namespace {

constexpr std::string_view noBreakSpace = "\u00A0";

/// An English text of the tables, and the English that is shown for it.
constexpr std::pair<std::string_view, std::string_view> reworded[] = {
    {"Back up profiles or move them to another Mac. Imported copies keep their camera identity.",
     "Back up profiles or move them to another computer. Imported copies keep their camera identity."},
};

/// What follows a count in French, in the plural and in the singular.
constexpr std::pair<std::string_view, std::string_view> nouns[] = {
    {" réussis", " réussi"},
    {" échecs", " échec"},
    {" ignorés", " ignoré"},
    {" images claires", " image claire"},
    {" images noires", " image noire"},
    {" candidats", " candidat"},
    {" taches fixes marquées présélectionnées", " tache fixe marquée présélectionnée"},
    {" taches fixes", " tache fixe"},
    {" pixels", " pixel"},
    {" colonnes", " colonne"},
    {" fichiers DNG trouvés", " fichier DNG trouvé"},
};

thread_local int wordings = 0;

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

/// French with the spaces that no line may be broken at.
std::string typeset(std::string french) {
  replaceAll(french, "« ", "«" + std::string(noBreakSpace));
  for (const std::string_view mark : {"»", ":", ";", "!", "?", "%%"})
    replaceAll(french, " " + std::string(mark), std::string(noBreakSpace) + std::string(mark));
  return french;
}

std::string shownEnglish(std::string_view english) {
  const auto* const row = std::ranges::find(reworded, english, &std::pair<std::string_view, std::string_view>::first);
  return std::string(row == std::end(reworded) ? english : row->second);
}

std::string shownCell(const Entry& entry, AppLanguage language) {
  if (language == AppLanguage::english) return shownEnglish(entry.english());
  std::string cell(entry.in(language));
  return language == AppLanguage::french ? typeset(std::move(cell)) : cell;
}

bool isShownAs(const Entry& entry, std::string_view text) {
  return text == shownCell(entry, AppLanguage::english) || text == shownCell(entry, AppLanguage::french);
}

/// One and, in French, none.
bool isSingular(std::string_view count) {
  return count == "1" || count == "0";
}

void agree(std::string& words) {
  for (const auto& [plural, singular] : nouns)
    if (words.starts_with(plural)) return static_cast<void>(words.replace(0, plural.size(), singular));
}

}  // namespace

ShownWording::ShownWording() {
  ++wordings;
}

ShownWording::~ShownWording() {
  --wordings;
}

bool ShownWording::isOn() {
  return wordings > 0;
}

std::string shownText(std::string_view english, std::optional<AppLanguage> language) {
  const AppLanguage tongue = language ? resolved(*language) : Localization::language();
  const Entry* entry = findEntry([english](const Entry& row) { return row.english() == english; });
  return entry ? shownCell(*entry, tongue) : std::string(english);
}

std::string shownOriginal(std::string_view text) {
  std::string known = original(text);
  if (known != text) return known;
  const Entry* entry = findEntry([text](const Entry& row) { return isShownAs(row, text); });
  return std::string(entry ? entry->english() : text);
}

std::string fillShown(std::string_view format, const std::vector<std::string>& values, AppLanguage language) {
  if (language != AppLanguage::french) return fillFormat(format, values);
  FormatParts parts = formatParts(format);
  std::vector<std::string> shown = values;
  for (std::size_t i = 0; i < parts.placeholders.size() && i < shown.size(); ++i) {
    if (parts.placeholders[i].back() == 'f') std::ranges::replace(shown[i], '.', ',');
    if (parts.placeholders[i].back() == 'd' && isSingular(shown[i])) agree(parts.literals[i + 1]);
  }
  return fillFormat(parts, shown);
}

}  // namespace tessaly::Localization
