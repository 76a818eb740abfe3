#include "app/EditMenu.h"

#include "app/widgets/QtText.h"

#include <QApplication>
#include <QKeySequence>
#include <QMenuBar>
#include <QMetaObject>

namespace tessaly {
namespace {

struct EditCommand {
  const char* title;
  QKeySequence::StandardKey key;
  const char* slot;
};

constexpr EditCommand editCommands[] = {
    {"Cut", QKeySequence::Cut, "cut"},
    {"Copy", QKeySequence::Copy, "copy"},
    {"Paste", QKeySequence::Paste, "paste"},
    {"Select All", QKeySequence::SelectAll, "selectAll"},
};

bool hasSlot(const QWidget* widget, const char* slot) {
  return widget && widget->metaObject()->indexOfSlot(QByteArray(slot) + "()") >= 0;
}

// Whoever walks through the menus by keys means the widget that had the focus before.
bool isMenu(const QWidget* widget) {
  return qobject_cast<const QMenuBar*>(widget) || qobject_cast<const QMenu*>(widget);
}

}  // namespace

EditMenu::EditMenu(QWidget* parent) : QMenu(localized("Edit"), parent) {
  for (const EditCommand& command : editCommands) {
    QAction* action = addAction(localized(command.title), this, [this, slot = command.slot] {
      if (hasSlot(focus_, slot)) QMetaObject::invokeMethod(focus_, slot);
    });
    action->setShortcut(command.key);
  }
  follow(QApplication::focusWidget());
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { follow(now); });
}

void EditMenu::follow(QWidget* focus) {
  if (isMenu(focus)) return;
  focus_ = focus;
  for (qsizetype item = 0; item < actions().size(); ++item)
    actions()[item]->setEnabled(hasSlot(focus_, editCommands[item].slot));
}

}  // namespace tessaly
