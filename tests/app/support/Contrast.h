// How far apart two colours are for the eye, as WCAG 2.1 computes it: 1 for the same, 21 for black and white.
#pragma once

#include <QColor>
#include <algorithm>
#include <cmath>

namespace tessaly::tests {

/// The relative luminance of a colour, 0 to 1.
[[nodiscard]] inline double relativeLuminance(const QColor& color) {
  const auto linear = [](double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

[[nodiscard]] inline double contrastOf(const QColor& first, const QColor& second) {
  const double one = relativeLuminance(first);
  const double other = relativeLuminance(second);
  return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

}  // namespace tessaly::tests
