// The texts that stand for the cases of an enumeration where it is stored or typed.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace tessaly {

template <typename Enumeration>
struct RawValue {
  Enumeration value;
  std::string_view text;
};

/// The text of `value`, which has a row in `table`.
template <typename Enumeration, std::size_t count>
std::string_view rawValueOf(const std::array<RawValue<Enumeration>, count>& table, Enumeration value) {
  return std::ranges::find(table, value, &RawValue<Enumeration>::value)->text;
}

/// The case whose text this is, exactly; nothing for any other text.
template <typename Enumeration, std::size_t count>
std::optional<Enumeration> caseOf(const std::array<RawValue<Enumeration>, count>& table, std::string_view text) {
  const auto row = std::ranges::find(table, text, &RawValue<Enumeration>::text);
  return row == table.end() ? std::nullopt : std::optional(row->value);
}

}  // namespace tessaly
