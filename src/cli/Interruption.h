// The request to stop, by Ctrl-C or another signal: files in progress finish, and the program ends with the status of
// that signal. At the second request it ends at once.
#pragma once

#include "platform/TerminationSignals.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

namespace tessaly::cli {

/// Made first thing and once. What it is asked for it does on a thread of its own.
class Interruption {
 public:
  Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;
  ~Interruption();

  [[nodiscard]] bool isRequested() const { return signal_ != 0; }

  /// The signal that has asked for it; 0 as long as none has.
  [[nodiscard]] int signal() const { return signal_; }

  /// The same when the work has ended, not to miss a signal that has just come. Nothing is watched any more.
  [[nodiscard]] int finish();

  /// Throws Interrupted once it is requested.
  void check() const;

  /// While it lives, calls `handler`, on the watching thread, when the request comes, or at once when it already has.
  class Handler {
   public:
    Handler(Interruption& interruption, std::function<void()> handler);
    Handler(const Handler&) = delete;
    Handler& operator=(const Handler&) = delete;
    ~Handler();

   private:
    Interruption& interruption_;
  };

 private:
  void watch();
  void request(int signal);
  void callHandler() const noexcept;
  void setHandler(std::function<void()> handler);

  TerminationSignals signals_;
  std::mutex lock_;
  std::function<void()> handler_;
  std::atomic<int> signal_ = 0;
  std::atomic<bool> ending_ = false;
  std::thread watcher_;
};

}  // namespace tessaly::cli
