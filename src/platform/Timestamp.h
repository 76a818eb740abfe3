// A moment in whole seconds, UTC, and its ISO 8601 internet form (2026-11-15T20:23:12Z).
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

using Timestamp = std::chrono::sys_seconds;

/// The present, truncated to whole seconds.
[[nodiscard]] Timestamp currentTimestamp();

[[nodiscard]] std::string iso8601Text(Timestamp time);

/// Parses the internet form with the designator Z or an hour offset; a fraction of a second is dropped. Nothing when
/// the text is anything else.
[[nodiscard]] std::optional<Timestamp> parseISO8601(std::string_view text);

}  // namespace tessaly
