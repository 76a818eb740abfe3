#include "app/widgets/Theme.h"

#include "app/widgets/SystemAppearance.h"
#include "preferences/AppPreferences.h"

#include <QApplication>

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

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

void applyAppAppearance() {
  const QPalette wanted = palette(AppPreferences::shared().appearance());
  QApplication::setPalette(wanted);
}

}  // namespace tessaly
