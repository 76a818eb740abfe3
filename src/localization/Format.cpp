#include "localization/Format.h"

#include "localization/Localization.h"
#include "localization/Shown.h"

#include <algorithm>
#include <cassert>
#include <charconv>

namespace tessaly::Localization {
namespace {

constexpr std::string_view digits = "0123456789";

/// The length of the placeholder at the start of `text`, which begins with "%"; 0 when there is none.
std::size_t placeholderLength(std::string_view text) {
  const std::size_t end = text.find_first_not_of("+.0123456789", 1);
  return end != std::string_view::npos && std::string_view("d@f").find(text[end]) != std::string_view::npos ? end + 1
                                                                                                            : 0;
}

bool isNumber(std::string_view text) {
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) text.remove_prefix(1);
  const std::string_view fraction = text.substr(std::min(text.find('.'), text.size()));
  const std::string_view whole = text.substr(0, text.size() - fraction.size());
  const bool wholeFraction = fraction.empty() || fraction.find_first_not_of(digits, 1) == std::string_view::npos;
  return !whole.empty() && whole.find_first_not_of(digits) == std::string_view::npos && wholeFraction &&
         fraction.size() != 1;
}

bool fits(std::string_view placeholder, std::string_view text) {
  if (placeholder.back() == '@') return true;
  return isNumber(text) && (placeholder.back() == 'f' || text.find('.') == std::string_view::npos);
}

/// Matches `text` against placeholder `index` and everything behind it.
bool match(const FormatParts& parts, std::size_t index, std::string_view text, std::vector<std::string>& values) {
  if (index == parts.placeholders.size()) return text.empty();
  const std::string& next = parts.literals[index + 1];
  for (std::size_t end = text.find(next); end != std::string_view::npos; end = text.find(next, end + 1)) {
    if (!fits(parts.placeholders[index], text.substr(0, end))) continue;
    values[index] = text.substr(0, end);
    if (match(parts, index + 1, text.substr(end + next.size()), values)) return true;
  }
  return false;
}

std::string decimal(std::int64_t number) {
  char buffer[24];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

}  // namespace

FormatParts formatParts(std::string_view format) {
  FormatParts parts{{""}, {}};
  while (!format.empty()) {
    std::size_t length = format.front() == '%' ? placeholderLength(format) : 0;
    if (length > 0) {
      parts.placeholders.emplace_back(format.substr(0, length));
      parts.literals.emplace_back();
    } else {
      parts.literals.back() += format.front();
      length = format.starts_with("%%") ? 2 : 1;
    }
    format.remove_prefix(length);
  }
  return parts;
}

std::optional<std::vector<std::string>> matchFormat(std::string_view format, std::string_view text) {
  const FormatParts parts = formatParts(format);
  std::vector<std::string> values(parts.placeholders.size());
  if (!text.starts_with(parts.literals.front())) return std::nullopt;
  if (!match(parts, 0, text.substr(parts.literals.front().size()), values)) return std::nullopt;
  return values;
}

std::string fillFormat(std::string_view format, const std::vector<std::string>& values) {
  return fillFormat(formatParts(format), values);
}

std::string fillFormat(const FormatParts& parts, const std::vector<std::string>& values) {
  assert(values.size() == parts.placeholders.size());
  std::string text = parts.literals.front();
  for (std::size_t i = 0; i < parts.placeholders.size(); ++i) {
    text += i < values.size() ? values[i] : parts.placeholders[i];
    text += parts.literals[i + 1];
  }
  return text;
}

std::vector<std::string> valuesOf(std::initializer_list<FormatArgument> arguments) {
  std::vector<std::string> values;
  for (const FormatArgument& argument : arguments) {
    const auto* number = std::get_if<std::int64_t>(&argument);
    values.push_back(number ? decimal(*number) : std::get<std::string>(argument));
  }
  return values;
}

std::string format(std::string_view format, std::initializer_list<FormatArgument> arguments) {
  return fillFormat(format, valuesOf(arguments));
}

std::string composedText(std::string_view english, std::optional<AppLanguage> language) {
  if (findEntry([english](const Entry& entry) { return entry.english() == english; }))
    return ShownWording::isOn() ? shownText(english, language) : text(english, language);
  std::optional<std::vector<std::string>> values;
  const Entry* composed = findEntry([&](const Entry& entry) {
    if (entry.english().find('%') != std::string_view::npos) values = matchFormat(entry.english(), english);
    return values.has_value();
  });
  if (!composed) return std::string(english);
  if (!ShownWording::isOn()) return fillFormat(text(composed->english(), language), *values);
  const AppLanguage tongue = language ? resolved(*language) : Localization::language();
  return fillShown(shownText(composed->english(), tongue), *values, tongue);
}

}  // namespace tessaly::Localization
