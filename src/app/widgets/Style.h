// The look of the controls: Fusion with roomier buttons, the main one filled with the highlight, edges and bars that
// are seen on light and on dark, and a focus frame that is seen everywhere.
#pragma once

#include <QProxyStyle>

class QStyleOptionButton;

namespace tessaly {

class Style : public QProxyStyle {
  Q_OBJECT

 public:
  Style() : QProxyStyle("Fusion") {}

  [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                       const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                                const QWidget* widget = nullptr) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace tessaly
