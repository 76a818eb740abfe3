// What mouse, wheel, gestures and keys do in the preview.
#include "app/preview/CalibrationPreviewView.h"
#include "app/widgets/QtText.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QNativeGestureEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace tessaly {
namespace {

constexpr double zoomStep = 1.25;
constexpr double notch = 120;  ///< of a wheel, in Qt's units
constexpr double panDistance = 4;
constexpr int viewParts = 8;

/// The sample that a position stands on, inside the image.
std::int64_t clampedSample(double position, std::int64_t count) {
  const double last = static_cast<double>(std::max<std::int64_t>(count, 1) - 1);
  return static_cast<std::int64_t>(std::clamp(std::floor(position), 0.0, last));
}

}  // namespace

void CalibrationPreviewView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !hasPreview()) return;
  pressed_ = event->position();
  panned_ = event->position();
}

void CalibrationPreviewView::mouseMoveEvent(QMouseEvent* event) {
  if (!pressed_) return;
  panning_ = panning_ || (event->position() - *pressed_).manhattanLength() > panDistance;
  if (!panning_) return;
  navigation_.panBy(device(event->position() - panned_));
  panned_ = event->position();
  navigationChanged();
}

void CalibrationPreviewView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !pressed_) return;
  const bool isClick = !panning_;
  pressed_.reset();
  panning_ = false;
  updateCursor();
  if (isClick) click(event->position());
}

void CalibrationPreviewView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !hasPreview()) return;
  if (const auto row = markerAt(event->position())) emit candidateDoubleClicked(*row);
}

void CalibrationPreviewView::click(QPointF widget) {
  if (const auto row = markerAt(widget)) {
    emit candidateClicked(*row);
    return;
  }
  const QPointF sample = sampleAt(widget);
  const std::int64_t x = clampedSample(sample.x(), store_.metadata().activeWidth);
  const std::int64_t y = clampedSample(sample.y(), store_.metadata().activeHeight);
  setManualGuideX(x);
  emit coordinateClicked(x, y);
}

// With Alt held down Qt reports a vertical wheel as a horizontal one.
void CalibrationPreviewView::wheelEvent(QWheelEvent* event) {
  if (!hasPreview()) return;
  const QPoint angle = event->angleDelta();
  const double notches = (angle.y() != 0 ? angle.y() : angle.x()) / notch;
  if (event->modifiers() & (Qt::ShiftModifier | Qt::AltModifier)) {
    const double distance = notches * deviceView().height() / viewParts;
    navigation_.panBy(event->modifiers() & Qt::ShiftModifier ? QPointF(distance, 0) : QPointF(0, distance));
    navigationChanged();
  } else {
    zoomBy(std::pow(zoomStep, notches), device(event->position()));
  }
  event->accept();
}

void CalibrationPreviewView::zoomBy(double factor, QPointF anchor) {
  navigation_.zoomTo(navigation_.zoom() * factor, anchor);
  navigationChanged();
}

// The selected candidate stays where it is as long as it is in view.
QPointF CalibrationPreviewView::keyAnchor() const {
  const QRectF view = deviceView();
  if (!current_ || !selected_.contains(*current_)) return view.center();
  const QRectF candidate = navigation_.transform().toDevice(coveredArea(store_.at(*current_), store_.metadata()));
  return candidate.intersects(view) ? candidate.intersected(view).center() : view.center();
}

void CalibrationPreviewView::zoomByGesture(const QNativeGestureEvent& event) {
  if (event.gestureType() == Qt::ZoomNativeGesture) zoomBy(1 + event.value(), device(event.position()));
}

bool CalibrationPreviewView::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    showToolTip(help->pos(), help->globalPos());
    return true;
  }
  if (event->type() == QEvent::NativeGesture && hasPreview()) {
    zoomByGesture(*static_cast<QNativeGestureEvent*>(event));
    return true;
  }
  return QAbstractScrollArea::viewportEvent(event);
}

void CalibrationPreviewView::keyPressEvent(QKeyEvent* event) {
  const bool handled = hasPreview() && (handleNavigationKey(*event) || handleCandidateKey(*event));
  event->setAccepted(handled);
}

bool CalibrationPreviewView::handleNavigationKey(const QKeyEvent& event) {
  const bool guide = event.modifiers() & Qt::ControlModifier;
  switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      zoomBy(zoomStep, keyAnchor());
      return true;
    case Qt::Key_Minus:
      zoomBy(1 / zoomStep, keyAnchor());
      return true;
    case Qt::Key_0:
      fitToWindow();
      return true;
    case Qt::Key_Left:
      guide ? moveGuide(-1) : panByView(1, 0);
      return true;
    case Qt::Key_Right:
      guide ? moveGuide(1) : panByView(-1, 0);
      return true;
    case Qt::Key_Up:
      panByView(0, 1);
      return true;
    case Qt::Key_Down:
      panByView(0, -1);
      return true;
    default:
      return false;
  }
}

bool CalibrationPreviewView::handleCandidateKey(const QKeyEvent& event) {
  if (event.modifiers() & ~Qt::KeypadModifier) return false;
  switch (event.key()) {
    case Qt::Key_N:
      emit stepRequested(1);
      return true;
    case Qt::Key_P:
      emit stepRequested(-1);
      return true;
    case Qt::Key_Space:
      emit toggleRequested();
      return true;
    case Qt::Key_Delete:
      emit removeRequested();
      return true;
    case Qt::Key_Escape:
      removeGuide();
      return true;
    default:
      return false;
  }
}

void CalibrationPreviewView::panByView(int horizontal, int vertical) {
  const QSizeF part = deviceView().size() / viewParts;
  navigation_.panBy({horizontal * part.width(), vertical * part.height()});
  navigationChanged();
}

// Without a guide it starts in the middle of what is in view.
void CalibrationPreviewView::moveGuide(int columns) {
  const std::int64_t width = store_.metadata().activeWidth;
  const QPointF middle = navigation_.transform().toSample(deviceView().center());
  const std::int64_t from = guide_.value_or(clampedSample(middle.x(), width));
  setManualGuideX(std::clamp<std::int64_t>(from + columns, 0, width - 1));
  emit guideMoved(*guide_);
}

void CalibrationPreviewView::removeGuide() {
  if (!guide_) return;
  setManualGuideX(std::nullopt);
  emit guideRemoved();
}

void CalibrationPreviewView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void CalibrationPreviewView::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

}  // namespace tessaly
