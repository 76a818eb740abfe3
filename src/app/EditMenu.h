// The menu "Edit": cuts, copies, pastes and selects all in the widget that has the focus.
//
// An item does what the slot of its name does in that widget (QLineEdit::cut, QTableView::selectAll, …); where a widget
// has no such slot the item is disabled, and its key belongs to the widget alone. User-interface thread only.
#pragma once

#include <QMenu>
#include <QPointer>

namespace tessaly {

class EditMenu : public QMenu {
  Q_OBJECT

 public:
  explicit EditMenu(QWidget* parent);

 private:
  void follow(QWidget* focus);

  QPointer<QWidget> focus_;
};

}  // namespace tessaly
