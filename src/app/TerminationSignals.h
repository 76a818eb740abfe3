// Ctrl-C in a terminal, and the system asking the program to end: both become a call on the user-interface thread.
//
// One at a time, made after QApplication; the user-interface thread's.
#pragma once

#include <QObject>
#include <functional>

namespace tessaly {

class TerminationSignals : public QObject {
 public:
  explicit TerminationSignals(std::function<void()> requested);
  ~TerminationSignals() override;

 private:
  void received();

  std::function<void()> requested_;
};

}  // namespace tessaly
