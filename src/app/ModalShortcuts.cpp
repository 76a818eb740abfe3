#include "app/ModalShortcuts.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace tessaly {
namespace {

bool belongsTo(const QObject* object, const QWidget& window) {
  for (; object; object = object->parent())
    if (object == &window) return true;
  return false;
}

}  // namespace

ModalShortcuts::ModalShortcuts() {
  qApp->installEventFilter(this);
}

bool ModalShortcuts::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Shortcut) return false;
  const QWidget* dialog = QApplication::activeModalWidget();
  return dialog && !belongsTo(watched, *dialog);
}

}  // namespace tessaly
