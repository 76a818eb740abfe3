#include "app/support/AppTest.h"
#include "app/widgets/Theme.h"

#include <QApplication>
#include <QPalette>
#include <algorithm>
#include <cmath>

namespace tessaly::tests {
namespace {

/// The relative luminance of a colour, 0 to 1 (WCAG 2.1).
double luminance(const QColor& color) {
  const auto linear = [](double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& first, const QColor& second) {
  const double one = luminance(first);
  const double other = luminance(second);
  return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

TEST(Theme, TextsAreReadableInBothLooks) {
  constexpr double readable = 4.5;
  for (const QPalette& palette : {lightPalette(), darkPalette()}) {
    for (const auto ground : {QPalette::Window, QPalette::Base}) {
      EXPECT_GE(contrast(palette.color(QPalette::WindowText), palette.color(ground)), readable);
      EXPECT_GE(contrast(palette.color(QPalette::PlaceholderText), palette.color(ground)), readable);
    }
    EXPECT_GE(contrast(palette.color(QPalette::ButtonText), palette.color(QPalette::Button)), readable);
    EXPECT_GE(contrast(palette.color(QPalette::ToolTipText), palette.color(QPalette::ToolTipBase)), readable);
  }
}

TEST(Theme, TheMainActionIsReadableInBothLooks) {
  constexpr double large = 4.0;  // bold by its fill, and at least 28 pixels high
  for (const QPalette& palette : {lightPalette(), darkPalette()})
    EXPECT_GE(contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)), large);
}

TEST(Theme, MarkersAreSeenAgainstBlackAndAgainstTheirHalo) {
  constexpr double visible = 3;
  for (const QRgb marker : {MeaningColor::included, MeaningColor::excluded, MeaningColor::guide})
    EXPECT_GE(contrast(QColor(marker), QColor(0x10, 0x10, 0x10)), visible);
  EXPECT_GE(contrast(QColor(0x10, 0x10, 0x10), QColor(MeaningColor::previewBackground)), visible);
}

class Appearance : public AppTest {};

TEST_F(Appearance, FollowsThePreference) {
  AppPreferences::shared().setAppearance(AppAppearance::dark);
  applyAppAppearance();
  EXPECT_TRUE(isDark(QApplication::palette()));
  AppPreferences::shared().setAppearance(AppAppearance::light);
  applyAppAppearance();
  EXPECT_FALSE(isDark(QApplication::palette()));
  AppPreferences::shared().setAppearance(AppAppearance::dark);
  applyAppAppearance();
  EXPECT_EQ(QApplication::palette().color(QPalette::Window), QColor(0x2b, 0x2b, 0x2b));
}

}  // namespace
}  // namespace tessaly::tests
