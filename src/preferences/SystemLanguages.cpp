#include "preferences/SystemLanguages.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <initializer_list>

namespace tessaly {
namespace {

std::string firstSet(std::initializer_list<const char*> variables) {
  for (const char* name : variables) {
    const char* value = std::getenv(name);
    if (value && *value != '\0') return value;
  }
  return "";
}

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

char lowered(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

}  // namespace

// ISO 639 gives a language two letters or three.
std::string languageTag(std::string_view locale) {
  std::string tag(locale.substr(0, locale.find_first_of(".@")));
  std::ranges::replace(tag, '_', '-');
  const std::size_t length = std::min(tag.find('-'), tag.size());
  const auto end = tag.begin() + static_cast<std::ptrdiff_t>(length);
  if (length < 2 || length > 3 || !std::all_of(tag.begin(), end, isLetter)) return "";
  std::transform(tag.begin(), end, tag.begin(), lowered);
  return tag;
}

std::vector<std::string> systemLanguages() {
  std::string locales = firstSet({"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) + ":";
  std::vector<std::string> tags;
  for (std::size_t end = locales.find(':'); end != std::string::npos; end = locales.find(':')) {
    const std::string tag = languageTag(std::string_view(locales).substr(0, end));
    if (!tag.empty()) tags.push_back(tag);
    locales.erase(0, end + 1);
  }
  return tags;
}

}  // namespace tessaly
