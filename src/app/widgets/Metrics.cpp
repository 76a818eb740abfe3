#include "app/widgets/Metrics.h"

#include <QApplication>
#include <QFontInfo>
#include <algorithm>
#include <cmath>

namespace tessaly::Metrics {
namespace {

// Desktops use 12 to 15 pixels; up to there the layout keeps its sizes.
constexpr double designFontPixels = 15;

}  // namespace

double fontScale() {
  return std::max(1.0, QFontInfo(QApplication::font()).pixelSize() / designFontPixels);
}

int scaled(int pixels) {
  return static_cast<int>(std::lround(pixels * fontScale()));
}

}  // namespace tessaly::Metrics
