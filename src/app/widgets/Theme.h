// The two looks of the application, light and dark, and which of them is on.
//
// User-interface thread only.
#pragma once

#include <QColor>
#include <QPalette>

namespace tessaly {

[[nodiscard]] QPalette lightPalette();
[[nodiscard]] QPalette darkPalette();

/// Shows the whole application in the appearance that the preferences ask for; open windows follow at once. `system`
/// is the platform's own palette where it has one, else the look that the desktop prefers.
void applyAppAppearance();

/// Whether texts are lighter than what they stand on.
[[nodiscard]] bool isDark(const QPalette& palette);

/// How far apart two colours are for the eye: 1 for the same, 21 for black and white (WCAG 2.1).
[[nodiscard]] double contrast(const QColor& first, const QColor& second);

/// For the edges of what is used: between window and text, as near to the window as a contrast of 3 to everything that
/// lies beside an edge allows; nearer where the control is disabled.
[[nodiscard]] QColor edgeColor(const QPalette& palette, bool enabled = true);

/// Colours with a meaning; they stay readable on both looks and on the grey behind the preview.
namespace MeaningColor {
inline constexpr QRgb included = 0xff34c759;
inline constexpr QRgb excluded = 0xffff4d42;
inline constexpr QRgb guide = 0xff00e5ff;
inline constexpr QRgb halo = 0xd0101010;
inline constexpr QRgb previewBackground = 0xff767676;  ///< the 18 % grey of a grey card
inline constexpr QRgb previewText = 0xffffffff;
}  // namespace MeaningColor

}  // namespace tessaly
