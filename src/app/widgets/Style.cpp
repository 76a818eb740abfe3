#include "app/widgets/Style.h"

#include "app/widgets/Metrics.h"
#include "app/widgets/Theme.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QTabBar>
#include <algorithm>

namespace tessaly {
namespace {

constexpr double corner = 2.5;
constexpr double focusWidth = 2;

bool isMainButton(const QStyleOption* option) {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
  return button && button->features & QStyleOptionButton::DefaultButton && button->state & QStyle::State_Enabled;
}

QColor fillOf(const QStyleOption& button) {
  const QColor highlight = button.palette.color(QPalette::Highlight);
  if (button.state & (QStyle::State_Sunken | QStyle::State_On)) return highlight.darker(120);
  return button.state & QStyle::State_MouseOver ? highlight.darker(108) : highlight;
}

void drawMainButton(const QStyleOption& option, QPainter& painter) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(fillOf(option));
  painter.drawRoundedRect(option.rect, corner, corner);
  painter.restore();
}

void drawFrame(const QRectF& rect, const QColor& color, QPainter& painter) {
  constexpr double half = focusWidth / 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, focusWidth));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), corner, corner);
  painter.restore();
}

bool isEnabled(const QStyleOption& option) {
  return option.state & QStyle::State_Enabled;
}

void drawEdge(const QStyleOption& option, QPainter& painter, double radius = corner) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, radius > 0);
  painter.setPen(QPen(edgeColor(option.palette, isEnabled(option)), 1));
  painter.setBrush(Qt::NoBrush);
  if (radius > 0) {
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
  } else {
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
  }
  painter.restore();
}

/// The frame of a field or a table: its edge, or where the focus is.
void drawFieldFrame(const QStyleOption& option, QPainter& painter, double radius) {
  if (option.state & QStyle::State_HasFocus) {
    drawFrame(option.rect, option.palette.color(QPalette::Highlight), painter);
  } else {
    drawEdge(option, painter, radius);
  }
}

/// Around a control; on the main button, where the highlight itself would not be seen, inside it.
void drawFocus(const QStyleOption& option, QPainter& painter) {
  constexpr int inset = 3;
  const bool isMain = isMainButton(&option);
  const QRect rect = isMain ? option.rect.adjusted(inset, inset, -inset, -inset) : option.rect;
  drawFrame(rect, option.palette.color(isMain ? QPalette::HighlightedText : QPalette::Highlight), painter);
}

/// Controls of which Fusion shows the focus only once it has been moved by keys.
bool showsFocusItself(const QWidget* widget) {
  return !qobject_cast<const QAbstractButton*>(widget) && !qobject_cast<const QComboBox*>(widget) &&
         !qobject_cast<const QTabBar*>(widget);
}

bool isWholeControl(QStyle::ControlElement element) {
  return element == QStyle::CE_PushButton || element == QStyle::CE_CheckBox || element == QStyle::CE_TabBarTab;
}

bool isWholeControl(QStyle::ComplexControl control) {
  return control == QStyle::CC_ComboBox || control == QStyle::CC_ToolButton;
}

QRectF grooveOf(const QStyleOptionSlider& slider, const QRect& room) {
  constexpr double thickness = 4;
  QRectF groove(room);
  const bool lies = slider.orientation == Qt::Horizontal;
  lies ? groove.setHeight(thickness) : groove.setWidth(thickness);
  groove.moveCenter(QRectF(room).center());
  return groove;
}

void drawSlider(const QStyle& style, const QStyleOptionSlider& slider, QPainter& painter, const QWidget* widget) {
  const QColor edge = edgeColor(slider.palette, isEnabled(slider));
  const QRect groove = style.subControlRect(QStyle::CC_Slider, &slider, QStyle::SC_SliderGroove, widget);
  const QRectF handle = style.subControlRect(QStyle::CC_Slider, &slider, QStyle::SC_SliderHandle, widget);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(edge);
  painter.drawRoundedRect(grooveOf(slider, groove), 2, 2);
  painter.setPen(QPen(edge, 1));
  painter.setBrush(slider.palette.color(QPalette::Button));
  const double side = std::min(handle.width(), handle.height()) - 1;
  QRectF knob(0, 0, side, side);
  knob.moveCenter(handle.center());
  painter.drawEllipse(knob);
  painter.restore();
  if (slider.state & QStyle::State_HasFocus) drawFrame(slider.rect, slider.palette.color(QPalette::Highlight), painter);
}

void drawScrollBar(const QStyle& style, const QStyleOptionSlider& bar, QPainter& painter, const QWidget* widget) {
  constexpr double inset = 3;
  const bool lies = bar.orientation == Qt::Horizontal;
  painter.save();
  painter.fillRect(bar.rect, bar.palette.color(QPalette::Window));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(edgeColor(bar.palette, isEnabled(bar)));
  const QRectF handle = style.subControlRect(QStyle::CC_ScrollBar, &bar, QStyle::SC_ScrollBarSlider, widget);
  painter.drawRoundedRect(handle.adjusted(inset, inset, -inset, -inset), corner, corner);
  painter.restore();
  const auto drawArrow = [&](QStyle::SubControl place, QStyle::PrimitiveElement arrow) {
    QStyleOption option = bar;
    option.rect = style.subControlRect(QStyle::CC_ScrollBar, &bar, place, widget).adjusted(4, 4, -4, -4);
    style.drawPrimitive(arrow, &option, &painter, widget);
  };
  drawArrow(QStyle::SC_ScrollBarSubLine, lies ? QStyle::PE_IndicatorArrowLeft : QStyle::PE_IndicatorArrowUp);
  drawArrow(QStyle::SC_ScrollBarAddLine, lies ? QStyle::PE_IndicatorArrowRight : QStyle::PE_IndicatorArrowDown);
}

/// A box of which the edge has the contrast of a text, whatever it lies on.
void drawCheckBox(const QStyleOption& option, QPainter& painter) {
  const auto group = option.state & QStyle::State_Enabled ? QPalette::Active : QPalette::Disabled;
  const QRectF box = QRectF(option.rect).adjusted(1, 1, -1, -1);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(option.palette.color(group, QPalette::PlaceholderText), 1));
  painter.setBrush(option.palette.color(group, QPalette::Base));
  painter.drawRoundedRect(box, corner, corner);
  if (option.state & QStyle::State_On) {
    QPainterPath tick(box.topLeft() + QPointF(0.2 * box.width(), 0.52 * box.height()));
    tick.lineTo(box.topLeft() + QPointF(0.42 * box.width(), 0.74 * box.height()));
    tick.lineTo(box.topLeft() + QPointF(0.8 * box.width(), 0.26 * box.height()));
    painter.setPen(QPen(option.palette.color(group, QPalette::Text), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(tick);
  }
  painter.restore();
}

}  // namespace

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                              const QWidget* widget) const {
  const QSize plain = QProxyStyle::sizeFromContents(type, option, size, widget);
  const QSize target(0, Metrics::targetHeight);
  switch (type) {
    case CT_PushButton:
      return (plain + QSize(Metrics::buttonMargin, 0)).expandedTo(target);
    case CT_TabBarTab:
      return (plain + QSize(Metrics::buttonMargin, 0)).expandedTo({0, Metrics::scaled(Metrics::tabHeight)});
    case CT_CheckBox:
    case CT_ComboBox:
    case CT_LineEdit:
    case CT_ToolButton:
      return plain.expandedTo(target);
    default:
      return plain;
  }
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
  if (element != CE_PushButtonLabel || !isMainButton(option)) {
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_ProgressBarContents) drawEdge(*option, *painter);
    if (isWholeControl(element) && option->state & State_HasFocus) drawFocus(*option, *painter);
    return;
  }
  QStyleOptionButton label = *static_cast<const QStyleOptionButton*>(option);
  label.palette.setColor(QPalette::ButtonText, option->palette.color(QPalette::HighlightedText));
  QProxyStyle::drawControl(element, &label, painter, widget);
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  switch (element) {
    case PE_PanelButtonCommand:
      if (isMainButton(option)) return drawMainButton(*option, *painter);
      break;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
      return drawCheckBox(*option, *painter);
    case PE_FrameFocusRect:
      if (showsFocusItself(widget)) drawFrame(option->rect, option->palette.color(QPalette::Highlight), *painter);
      return;
    case PE_Frame:
      return drawFieldFrame(*option, *painter, 0);
    case PE_FrameLineEdit:
      return drawFieldFrame(*option, *painter, corner);
    default:
      break;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (element == PE_PanelButtonCommand) drawEdge(*option, *painter);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
  const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_Slider && slider) return drawSlider(*this, *slider, *painter, widget);
  if (control == CC_ScrollBar && slider) return drawScrollBar(*this, *slider, *painter, widget);
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (isWholeControl(control) && option->state & State_HasFocus) drawFocus(*option, *painter);
}

// Room for the focus between the edge of a table and what is in it.
int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  if (metric == PM_DefaultFrameWidth && qobject_cast<const QAbstractItemView*>(widget))
    return static_cast<int>(focusWidth);
  return QProxyStyle::pixelMetric(metric, option, widget);
}

}  // namespace tessaly
