#include "app/widgets/FittingScrollArea.h"

#include <QEvent>
#include <QLayout>
#include <QResizeEvent>
#include <QScrollBar>
#include <algorithm>

namespace tessaly {

FittingScrollArea::FittingScrollArea(QWidget& content) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
  setWidget(&content);
  content.installEventFilter(this);
}

// The height that the content needs depends on the width that it gets.
QSize FittingScrollArea::sizeHint() const {
  const QLayout& layout = *widget()->layout();
  const int width = std::max(viewport()->width(), layout.totalMinimumSize().width());
  const int height = layout.hasHeightForWidth() ? layout.totalHeightForWidth(width) : layout.totalSizeHint().height();
  return {layout.totalSizeHint().width(), height};
}

QSize FittingScrollArea::minimumSizeHint() const {
  const int bar = verticalScrollBar()->sizeHint().width();
  return {widget()->layout()->totalMinimumSize().width() + bar, QScrollArea::minimumSizeHint().height()};
}

bool FittingScrollArea::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

void FittingScrollArea::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  if (event->oldSize().width() != event->size().width()) updateGeometry();
}

}  // namespace tessaly
