// The signals that ask a process to end, SIGINT, SIGTERM, SIGHUP and SIGQUIT, as something to wait for or to be woken
// by. What was ignored when the process was started stays ignored.
//
// One at a time. One thread takes the signals; `wake` may be called from any.
#pragma once

#include <signal.h>

#include <array>

namespace tessaly {

class TerminationSignals {
 public:
  static constexpr std::array<int, 4> numbers{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

  /// Throws std::system_error when the process may open no more files.
  TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;
  ~TerminationSignals();  ///< what they did before, they do again

  /// Can be read from when a signal has come, until it is taken.
  [[nodiscard]] int descriptor() const;

  /// The first signal that has come since the last call, 0 when there is none. Those that came together are one
  /// request.
  [[nodiscard]] int take();

  /// Waits for a signal, or for `wake`: then 0.
  [[nodiscard]] int wait();
  void wake();

 private:
  std::array<struct sigaction, numbers.size()> before_{};
};

/// The exit status of a process that one of them has ended, as a shell counts it.
[[nodiscard]] constexpr int statusEndedBy(int signal) {
  return 128 + signal;
}

}  // namespace tessaly
