#include "app/support/AppTest.h"
#include "app/support/Contrast.h"
#include "app/widgets/Theme.h"

#include <QApplication>
#include <QPalette>
#include <algorithm>
#include <cmath>

namespace tessaly::tests {
namespace {

TEST(Theme, TextsAreReadableInBothLooks) {
  constexpr double readable = 4.5;
  for (const QPalette& palette : {lightPalette(), darkPalette()}) {
    for (const auto ground : {QPalette::Window, QPalette::Base}) {
      EXPECT_GE(contrastOf(palette.color(QPalette::WindowText), palette.color(ground)), readable);
      EXPECT_GE(contrastOf(palette.color(QPalette::PlaceholderText), palette.color(ground)), readable);
    }
    EXPECT_GE(contrastOf(palette.color(QPalette::ButtonText), palette.color(QPalette::Button)), readable);
    EXPECT_GE(contrastOf(palette.color(QPalette::ToolTipText), palette.color(QPalette::ToolTipBase)), readable);
  }
}

TEST(Theme, TheMainActionIsReadableInBothLooks) {
  constexpr double large = 4.0;  // bold by its fill, and at least 28 pixels high
  for (const QPalette& palette : {lightPalette(), darkPalette()})
    EXPECT_GE(contrastOf(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)), large);
}

TEST(Theme, MarkersAreSeenAgainstBlackAndAgainstTheirHalo) {
  constexpr double visible = 3;
  for (const QRgb marker : {MeaningColor::included, MeaningColor::excluded, MeaningColor::guide})
    EXPECT_GE(contrastOf(QColor(marker), QColor(0x10, 0x10, 0x10)), visible);
  EXPECT_GE(contrastOf(QColor(0x10, 0x10, 0x10), QColor(MeaningColor::previewBackground)), visible);
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
