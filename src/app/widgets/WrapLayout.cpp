#include "app/widgets/WrapLayout.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace tessaly {

/// The items of one line and what they need together.
struct WrapLayout::Line {
  QList<QLayoutItem*> items;
  int width = 0;
  int height = 0;

  void add(QLayoutItem* item, int spacing) {
    const QSize size = item->sizeHint();
    width += (items.isEmpty() ? 0 : spacing) + size.width();
    height = std::max(height, size.height());
    items << item;
  }
};

WrapLayout::WrapLayout(QWidget* parent) : QLayout(parent) {
  setContentsMargins(0, 0, 0, 0);
  setSpacing(Metrics::grid);
}

WrapLayout::~WrapLayout() {
  qDeleteAll(items_);
}

void WrapLayout::addItem(QLayoutItem* item) {
  items_ << item;
}

QLayoutItem* WrapLayout::itemAt(int index) const {
  return items_.value(index);
}

QLayoutItem* WrapLayout::takeAt(int index) {
  return index >= 0 && index < items_.size() ? items_.takeAt(index) : nullptr;
}

std::vector<WrapLayout::Line> WrapLayout::lines(int width) const {
  std::vector<Line> result(1);
  for (QLayoutItem* item : items_) {
    if (item->isEmpty()) continue;
    const Line& last = result.back();
    const bool fits = last.items.isEmpty() || last.width + spacing() + item->sizeHint().width() <= width;
    if (!fits) result.emplace_back();
    result.back().add(item, spacing());
  }
  return result;
}

int WrapLayout::heightForWidth(int width) const {
  int height = -spacing();
  for (const Line& line : lines(width))
    height += line.height + spacing();
  return std::max(height, 0);
}

QSize WrapLayout::sizeHint() const {
  const std::vector<Line> all = lines(QLAYOUTSIZE_MAX);
  return {all.front().width, all.front().height};
}

QSize WrapLayout::minimumSize() const {
  QSize size;
  for (QLayoutItem* item : items_)
    if (!item->isEmpty()) size = size.expandedTo(item->minimumSize());
  return size;
}

void WrapLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  int y = rect.y();
  for (const Line& line : lines(rect.width())) {
    int x = rect.x();
    for (QLayoutItem* item : line.items) {
      const QSize size = item->sizeHint();
      const bool takesRest = lastStretches_ && item == items_.constLast();
      const int width = takesRest ? rect.right() + 1 - x : std::min(size.width(), rect.width());
      const QRect place(x, y + (line.height - size.height()) / 2, width, size.height());
      item->setGeometry(QStyle::visualRect(parentWidget()->layoutDirection(), rect, place));
      x += size.width() + spacing();
    }
    y += line.height + spacing();
  }
}

}  // namespace tessaly
