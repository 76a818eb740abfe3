// The placeholders of a text: %d and %@, and the rounded numbers ("%.1f", "%+.1f", "%.0f") that some reasons hold.
//
// Stateless. A format is taken apart once, so that nothing that is put into it is ever read as a format again.
#pragma once

#include "localization/Localization.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly::Localization {

/// A format as the literal texts around its placeholders: one more literal than placeholders, "%%" already a "%".
struct FormatParts {
  std::vector<std::string> literals;
  std::vector<std::string> placeholders;  ///< as written, for example "%+.1f"
};

[[nodiscard]] FormatParts formatParts(std::string_view format);

/// The texts that stand for the placeholders when `text` was made from `format`; nothing when it was not.
[[nodiscard]] std::optional<std::vector<std::string>> matchFormat(std::string_view format, std::string_view text);

/// The text with `values`, one a placeholder, in their places.
[[nodiscard]] std::string fillFormat(std::string_view format, const std::vector<std::string>& values);
[[nodiscard]] std::string fillFormat(const FormatParts& parts, const std::vector<std::string>& values);

/// The arguments as they are put in.
[[nodiscard]] std::vector<std::string> valuesOf(std::initializer_list<FormatArgument> arguments);

}  // namespace tessaly::Localization
