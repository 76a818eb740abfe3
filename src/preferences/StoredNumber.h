// A whole number as a settings file may hold it.
#pragma once

#include <cstdint>
#include <string_view>

namespace tessaly {

/// The number that the whole text is, its fraction dropped, clamped to `lowest`…`highest`; 0, clamped likewise, for a
/// text that is no number.
[[nodiscard]] std::int64_t storedNumber(std::string_view text, std::int64_t lowest, std::int64_t highest);

}  // namespace tessaly
