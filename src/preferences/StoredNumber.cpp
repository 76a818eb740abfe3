#include "preferences/StoredNumber.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tessaly {
namespace {

double number(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = end == text.data() + text.size();
  return whole && error == std::errc() && std::isfinite(value) ? value : 0;
}

}  // namespace

std::int64_t storedNumber(std::string_view text, std::int64_t lowest, std::int64_t highest) {
  const double clamped = std::clamp(number(text), static_cast<double>(lowest), static_cast<double>(highest));
  return static_cast<std::int64_t>(clamped);
}

}  // namespace tessaly
