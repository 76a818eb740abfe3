// Numbers as JSON texts hold them, for the decoders of all records. What an unfit value means is the decoder's to say.
//
// Stateless. `JSON` is nlohmann::json or nlohmann::ordered_json.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

namespace tessaly {

/// The value of a JSON number that is a whole number in the range of `Integer`, also when it is written as 4.0. Nothing
/// for 4.5, "4" and whatever does not fit; nor for ±2^63 and beyond with a decimal point, which may stand for another
/// number that was rounded.
template <typename Integer = std::int64_t, typename JSON>
[[nodiscard]] std::optional<Integer> wholeNumber(const JSON& value) {
  const auto inRange = [](auto number) {
    return std::in_range<Integer>(number) ? std::optional(static_cast<Integer>(number)) : std::nullopt;
  };
  if (value.is_number_unsigned()) return inRange(value.template get<std::uint64_t>());
  if (value.is_number_integer()) return inRange(value.template get<std::int64_t>());
  if (!value.is_number_float()) return std::nullopt;
  const auto number = value.template get<double>();
  if (std::abs(number) >= 0x1p63 || number != std::trunc(number)) return std::nullopt;
  return inRange(static_cast<std::int64_t>(number));
}

/// The value of a JSON number, whole or not, that is finite as a double.
template <typename JSON>
[[nodiscard]] std::optional<double> finiteNumber(const JSON& value) {
  if (!value.is_number()) return std::nullopt;
  const auto number = value.template get<double>();
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

}  // namespace tessaly
