#include "calibration/review/NumberParsing.h"

#include "calibration/review/InvalidInput.h"
#include "platform/Text.h"

#include <charconv>
#include <string>
#include <system_error>

namespace tessaly::CandidateSelection {
namespace {

// std::from_chars knows no plus sign.
std::string_view withoutPlus(std::string_view text) {
  const bool isSigned = text.starts_with('+') && !text.starts_with("+-");
  return isSigned ? text.substr(1) : text;
}

// The number that is the whole of the text; nothing when it is none or out of range.
template <typename Number>
std::optional<Number> parsedNumber(std::string_view text) {
  const std::string_view digits = withoutPlus(text);
  Number number{};
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return number;
}

}  // namespace

std::optional<double> parseConfidence(std::string_view text) {
  if (!isValidUTF8(text)) return std::nullopt;
  std::string number = trimmed(text);
  std::erase(number, '%');
  const std::optional<double> percent = parsedNumber<double>(trimmed(number));
  if (!percent || !(*percent >= 50 && *percent <= 100)) return std::nullopt;
  return *percent / 100;
}

double requireConfidence(std::string_view text) {
  const std::optional<double> confidence = parseConfidence(text);
  if (!confidence) throw InvalidInput("Enter a pixel-confidence value from 50 to 100, such as 95 or 98.");
  return *confidence;
}

std::optional<std::int64_t> parseWholeNumber(std::string_view text) {
  return parsedNumber<std::int64_t>(text);
}

}  // namespace tessaly::CandidateSelection
