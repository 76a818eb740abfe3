// A universally unique identifier, by libuuid.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

struct UUID {
  std::array<std::uint8_t, 16> bytes{};

  /// A new random (version 4) identifier.
  [[nodiscard]] static UUID random();

  /// Parses the 36-character hyphenated form, in either case; nothing when the text is anything else.
  [[nodiscard]] static std::optional<UUID> parse(std::string_view text);

  /// The 36-character hyphenated form in upper-case hexadecimal.
  [[nodiscard]] std::string text() const;

  auto operator<=>(const UUID&) const = default;
};

}  // namespace tessaly
