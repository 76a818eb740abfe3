#include "app/widgets/Style.h"

#include "app/widgets/Metrics.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionButton>

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
  const int margin = Metrics::scaled(Metrics::buttonMargin);
  const QSize target(0, Metrics::targetHeight);
  switch (type) {
    case CT_PushButton:
      return (plain + QSize(margin, 0)).expandedTo(target);
    case CT_TabBarTab:
      return (plain + QSize(margin, 0)).expandedTo({0, Metrics::scaled(Metrics::tabHeight)});
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
  if (element != CE_PushButtonLabel || !isMainButton(option))
    return QProxyStyle::drawControl(element, option, painter, widget);
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
      if (!(option->state & State_KeyboardFocusChange)) return;
      return drawFrame(option->rect, option->palette.color(QPalette::Highlight), *painter);
    default:
      break;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (element == PE_PanelLineEdit && option->state & State_HasFocus)
    drawFrame(option->rect, option->palette.color(QPalette::Highlight), *painter);
}

}  // namespace tessaly
