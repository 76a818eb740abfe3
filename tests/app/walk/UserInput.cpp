#include "app/walk/UserInput.h"

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

namespace tessaly::tests::input {
namespace {

constexpr int notch = 120;
constexpr int pause = 10'000;  // in milliseconds; longer than between the clicks of a double click

int now = 0;  // the time of the events
int betweenClicks = pause;

void send(QWidget& widget, QPoint place, Qt::MouseButtons held, Qt::MouseButton button, QEvent::Type type,
          Qt::KeyboardModifiers modifiers) {
  QWidget* const window = widget.window();
  if (!window->isVisible() || !window->windowHandle()) return;
  if (type == QEvent::MouseButtonPress) now += betweenClicks;
  qt_handleMouseEvent(window->windowHandle(), QPointF(widget.mapTo(window, place)), QPointF(widget.mapToGlobal(place)),
                      held, button, type, modifiers, now);
}

bool isBlocked(const QWidget& widget) {
  const QWidget* dialog = QApplication::activeModalWidget();
  return QApplication::activePopupWidget() || (dialog && widget.window() != dialog);
}

}  // namespace

QWidget* frontWindow() {
  if (QWidget* menu = QApplication::activePopupWidget()) return menu;
  if (QWidget* dialog = QApplication::activeModalWidget()) return dialog;
  return QApplication::activeWindow();
}

void press(QWidget& widget, QPoint place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
  send(widget, place, button, button, QEvent::MouseButtonPress, modifiers);
}

void move(QWidget& widget, QPoint place, Qt::MouseButton held) {
  send(widget, place, held, Qt::NoButton, QEvent::MouseMove, Qt::NoModifier);
}

void release(QWidget& widget, QPoint place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
  send(widget, place, Qt::NoButton, button, QEvent::MouseButtonRelease, modifiers);
}

void click(QWidget& widget, QPoint place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
  const QPointer<QWidget> clicked(&widget);
  press(widget, place, button, modifiers);
  if (clicked) release(*clicked, place, button, modifiers);
}

void clickAgain(QWidget& widget, QPoint place) {
  betweenClicks = 1;
  click(widget, place);
  betweenClicks = pause;
}

void turnWheel(QWidget& widget, QPoint place, bool up, Qt::KeyboardModifiers modifiers) {
  if (isBlocked(widget)) return;
  QWheelEvent event(place, widget.mapToGlobal(place), QPoint(), QPoint(0, up ? notch : -notch), Qt::NoButton, modifiers,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&widget, &event);
}

void key(int code, Qt::KeyboardModifiers modifiers, const QString& text) {
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    const QWidget* window = frontWindow();
    if (window && window->windowHandle()) qt_handleKeyEvent(window->windowHandle(), type, code, modifiers, text);
  }
}

}  // namespace tessaly::tests::input
