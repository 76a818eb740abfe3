#include "app/widgets/Theme.h"

#include "app/widgets/SystemAppearance.h"
#include "preferences/AppPreferences.h"

#include <QApplication>
#include <QList>
#include <algorithm>
#include <cmath>

namespace tessaly {
namespace {

/// What a look is made of; everything else is derived from it.
struct Tones {
  QRgb window;
  QRgb base;
  QRgb alternate;
  QRgb button;
  QRgb text;
  QRgb secondary;
  QRgb disabled;
  QRgb highlight;
  QRgb light;
  QRgb midlight;
  QRgb mid;
  QRgb dark;
  QRgb shadow;
  QRgb toolTip;
  QRgb link;
};

constexpr Tones lightTones{
    .window = 0xfff4f4f4,
    .base = 0xffffffff,
    .alternate = 0xfffafafa,
    .button = 0xffffffff,
    .text = 0xff1c1c1c,
    .secondary = 0xff5f5f5f,
    .disabled = 0xffa3a3a3,
    .highlight = 0xff2b6cb8,
    .light = 0xffffffff,
    .midlight = 0xffe9e9e9,
    .mid = 0xffcccccc,
    .dark = 0xffb4b4b4,
    .shadow = 0xff8a8a8a,
    .toolTip = 0xffffffff,
    .link = 0xff2b6cb8,
};

constexpr Tones darkTones{
    .window = 0xff2b2b2b,
    .base = 0xff1f1f1f,
    .alternate = 0xff242424,
    .button = 0xff3a3a3a,
    .text = 0xffe6e6e6,
    .secondary = 0xffa8a8a8,
    .disabled = 0xff6e6e6e,
    .highlight = 0xff3d7dca,
    .light = 0xff4a4a4a,
    .midlight = 0xff404040,
    .mid = 0xff4d4d4d,
    .dark = 0xff181818,
    .shadow = 0xff0c0c0c,
    .toolTip = 0xff3a3a3a,
    .link = 0xff7fb2ec,
};

void setSurfaces(QPalette& palette, const Tones& tones) {
  palette.setColor(QPalette::Window, tones.window);
  palette.setColor(QPalette::Base, tones.base);
  palette.setColor(QPalette::AlternateBase, tones.alternate);
  palette.setColor(QPalette::Button, tones.button);
  palette.setColor(QPalette::ToolTipBase, tones.toolTip);
  palette.setColor(QPalette::Highlight, tones.highlight);
  palette.setColor(QPalette::Light, tones.light);
  palette.setColor(QPalette::Midlight, tones.midlight);
  palette.setColor(QPalette::Mid, tones.mid);
  palette.setColor(QPalette::Dark, tones.dark);
  palette.setColor(QPalette::Shadow, tones.shadow);
}

void setTexts(QPalette& palette, QPalette::ColorGroup group, QRgb text) {
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
    palette.setColor(group, role, text);
}

QPalette paletteOf(const Tones& tones) {
  QPalette palette;
  setSurfaces(palette, tones);
  setTexts(palette, QPalette::Active, tones.text);
  setTexts(palette, QPalette::Inactive, tones.text);
  setTexts(palette, QPalette::Disabled, tones.disabled);
  palette.setColor(QPalette::PlaceholderText, tones.secondary);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::BrightText, Qt::white);
  palette.setColor(QPalette::Link, tones.link);
  palette.setColor(QPalette::LinkVisited, tones.link);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, tones.mid);
  palette.setColor(QPalette::Disabled, QPalette::HighlightedText, tones.disabled);
  return palette;
}

// Qt clears its own palette when it is given a default one; what is left then is the platform's, or the style's where
// the platform has none.
QPalette platformPalette() {
  QApplication::setPalette(QPalette());
  return QApplication::palette();
}

QPalette systemPalette() {
  QPalette platform = platformPalette();
  if (isPlatformOwned(platform)) return platform;
  return prefersDark(platform) ? darkPalette() : lightPalette();
}

double luminance(const QColor& color) {
  const auto linear = [](double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor between(const QColor& first, const QColor& second, double share) {
  const auto mixed = [share](int one, int other) { return static_cast<int>(std::lround(one + (other - one) * share)); };
  return {mixed(first.red(), second.red()), mixed(first.green(), second.green()), mixed(first.blue(), second.blue())};
}

QPalette palette(AppAppearance appearance) {
  switch (appearance) {
    case AppAppearance::light:
      return lightPalette();
    case AppAppearance::dark:
      return darkPalette();
    case AppAppearance::system:
      break;
  }
  return systemPalette();
}

}  // namespace

QPalette lightPalette() {
  return paletteOf(lightTones);
}

QPalette darkPalette() {
  return paletteOf(darkTones);
}

double contrast(const QColor& first, const QColor& second) {
  const double one = luminance(first);
  const double other = luminance(second);
  return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

QColor edgeColor(const QPalette& palette, bool enabled) {
  constexpr double seen = 3.1;  // 3, and what rounding takes away
  constexpr double step = 0.02;
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  const auto isSeen = [&palette](const QColor& edge) {
    return std::ranges::all_of(QList{QPalette::Window, QPalette::Base, QPalette::Button}, [&](auto ground) {
      return contrast(edge, palette.color(QPalette::Active, ground)) >= seen;
    });
  };
  double share = step;
  while (share < 1 && !isSeen(between(window, text, share)))
    share += step;
  return between(window, text, enabled ? share : share / 2);
}

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

void applyAppAppearance() {
  const QPalette wanted = palette(AppPreferences::shared().appearance());
  QApplication::setPalette(wanted);
}

}  // namespace tessaly
