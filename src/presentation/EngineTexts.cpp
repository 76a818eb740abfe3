#include "presentation/EngineTexts.h"

#include "localization/Localization.h"

#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace tessaly {
namespace {

/// The engine's texts that contain a name or a number. Those without are keys of their own.
constexpr std::array<std::string_view, 7> formats{
    "Reading %@",
    "Analyzing %@",
    "Checking partial defective column in %@",
    "Repeated in %d independent exposure groups",
    "Fixed sensor spot repeated in %d bright-field exposure groups",
    "Fixed column anomaly %.1fσ; same sign in %.0f%% of frames; repeated across %d exposure groups",
    "Partial defective column below a fixed pixel; column offset %+.1f; repeated across %d exposure groups",
};

/// What stands between the placeholders of a format; one more than there are placeholders.
using Literals = std::vector<std::string>;

/// How long the placeholder at the beginning of `text` is: "%d", "%@", "%.1f", "%+.1f".
std::size_t placeholderLength(std::string_view text) {
  return text.find_first_of("d@f") + 1;
}

Literals literals(std::string_view format) {
  Literals result(1);
  while (!format.empty()) {
    const bool isPercentSign = format.substr(0, 2) == "%%";
    const bool isPlaceholder = format.front() == '%' && !isPercentSign;
    if (isPlaceholder) result.emplace_back();
    if (!isPlaceholder) result.back() += format.front();
    format.remove_prefix(isPlaceholder ? placeholderLength(format) : isPercentSign ? 2 : 1);
  }
  return result;
}

/// What stands in the places of the placeholders; nothing when the text was not made from these literals.
std::optional<std::vector<std::string>> captured(std::string_view text, const Literals& parts) {
  if (!text.starts_with(parts.front())) return std::nullopt;
  text.remove_prefix(parts.front().size());
  std::vector<std::string> values;
  for (std::size_t index = 1; index < parts.size(); ++index) {
    const bool isLast = index + 1 == parts.size();
    if (isLast && !text.ends_with(parts[index])) return std::nullopt;
    const std::size_t end = isLast ? text.size() - parts[index].size() : text.find(parts[index]);
    if (end == std::string_view::npos) return std::nullopt;
    values.emplace_back(text.substr(0, end));
    text.remove_prefix(end + parts[index].size());
  }
  return values;
}

std::string joined(const Literals& parts, const std::vector<std::string>& values) {
  std::string text = parts.front();
  for (std::size_t index = 0; index < values.size(); ++index)
    text += values[index] + parts[index + 1];
  return text;
}

}  // namespace

std::string translatedEngineText(std::string_view english) {
  for (const std::string_view format : formats) {
    const auto values = captured(english, literals(format));
    if (values) return joined(literals(L(format)), *values);
  }
  return L(english);
}

}  // namespace tessaly
