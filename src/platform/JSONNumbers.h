// Whole numbers as JSON texts hold them, for the decoders of all records.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

namespace tessaly {

/// The value of a JSON number that is a 64-bit whole number, also when it is written as 4.0. Nothing for 4.5, "4" and
/// whatever does not fit; nor for -2^63 and beyond with a decimal point, which may stand for another number that was
/// rounded. `JSON` is nlohmann::json or nlohmann::ordered_json.
template <typename JSON>
[[nodiscard]] std::optional<std::int64_t> wholeNumber(const JSON& value) {
  if (value.is_number_unsigned()) {
    const auto number = value.template get<std::uint64_t>();
    return std::in_range<std::int64_t>(number) ? std::optional(static_cast<std::int64_t>(number)) : std::nullopt;
  }
  if (value.is_number_integer()) return value.template get<std::int64_t>();
  if (!value.is_number_float()) return std::nullopt;
  const auto number = value.template get<double>();
  if (std::abs(number) >= 0x1p63 || number != std::trunc(number)) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

}  // namespace tessaly
