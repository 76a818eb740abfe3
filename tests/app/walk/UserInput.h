// Mouse and keyboard as the window system reports them: they reach the window that the toolkit gives them to, past
// dialogs and menus, or none. User-interface thread only; nothing waits.
#pragma once

#include <QPoint>
#include <QString>
#include <QWidget>
#include <Qt>

namespace tessaly::tests::input {

/// The window that the user would work with: the open menu, the dialog, or the active window; nullptr without one.
[[nodiscard]] QWidget* frontWindow();

void press(QWidget& widget, QPoint place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void move(QWidget& widget, QPoint place, Qt::MouseButton held);
void release(QWidget& widget, QPoint place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

/// Presses and releases; the widget may be gone after either.
void click(QWidget& widget, QPoint place, Qt::MouseButton button = Qt::LeftButton,
           Qt::KeyboardModifiers modifiers = Qt::NoModifier);

/// The second click of a double click.
void clickAgain(QWidget& widget, QPoint place);

/// Turns the wheel by one notch unless a dialog is in front of the widget.
void turnWheel(QWidget& widget, QPoint place, bool up, Qt::KeyboardModifiers modifiers);

/// Presses and releases a key in the window in front.
void key(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = QString());

}  // namespace tessaly::tests::input
