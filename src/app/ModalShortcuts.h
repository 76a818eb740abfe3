// Keeps the shortcuts of a window from working while a dialog blocks it.
//
// Qt keeps keys and clicks from a blocked window, but looks for a shortcut before it asks which window is blocked.
// Lives as long as the application wants that; user-interface thread only.
#pragma once

#include <QObject>

namespace tessaly {

class ModalShortcuts : public QObject {
 public:
  ModalShortcuts();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tessaly
