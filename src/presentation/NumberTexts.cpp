#include "presentation/NumberTexts.h"

#include "localization/Localization.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tessaly::NumberTexts {
namespace {

constexpr int countingDigits = 3;

}  // namespace

std::string decimal(double value, int digits) {
  std::string text = fmt::format("{:.{}f}", value, digits);
  if (Localization::language() == AppLanguage::french) std::replace(text.begin(), text.end(), '.', ',');
  return text;
}

std::string significant(double value) {
  if (value == 0) return "0";
  const int magnitude = static_cast<int>(std::floor(std::log10(std::abs(value))));
  const double unit = std::pow(10, magnitude - countingDigits + 1);
  return decimal(std::round(value / unit) * unit, std::max(countingDigits - 1 - magnitude, 0));
}

}  // namespace tessaly::NumberTexts
