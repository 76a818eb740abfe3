// The distances of the window: one grid, so that everything lines up, growing with the system's font where text is
// concerned.
#pragma once

namespace tessaly::Metrics {

inline constexpr int grid = 8;
inline constexpr int groupSpacing = 16;
inline constexpr int windowMargin = 16;

/// The smallest height of anything that is clicked.
inline constexpr int targetHeight = 28;

/// What a button keeps free beside its text more than the style does, both sides together.
inline constexpr int buttonMargin = 16;

inline constexpr int tabHeight = 34;

/// How much larger the application's font is than the one the layout was drawn for; never below 1.
[[nodiscard]] double fontScale();

/// `pixels` of the layout, grown with the font.
[[nodiscard]] int scaled(int pixels);

}  // namespace tessaly::Metrics
