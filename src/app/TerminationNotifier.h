// Ctrl-C in a terminal, and the system asking the program to end: both become a call on the user-interface thread.
//
// One at a time, made after QApplication; the user-interface thread's.
#pragma once

#include "platform/TerminationSignals.h"

#include <QObject>
#include <functional>

namespace tessaly {

class TerminationNotifier : public QObject {
 public:
  /// `requested` is called with the signal's number.
  explicit TerminationNotifier(std::function<void(int)> requested);

 private:
  void received();

  TerminationSignals signals_;
  std::function<void(int)> requested_;
};

}  // namespace tessaly
