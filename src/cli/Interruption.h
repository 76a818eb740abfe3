// Ctrl-C: work is asked to stop, files in progress finish, and the program ends with its own exit status.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

namespace tessaly::cli {

/// Made first thing, before any other thread, and once: from then on SIGINT reaches its watching thread only.
class Interruption {
 public:
  Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;
  ~Interruption();

  [[nodiscard]] bool isRequested() const { return requested_; }

  /// Throws Interrupted once Ctrl-C has come.
  void check() const;

  /// While it lives, calls `handler`, on the watching thread, when Ctrl-C comes, or at once when it already has.
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
  void setHandler(std::function<void()> handler);

  std::mutex lock_;
  std::function<void()> handler_;
  std::atomic<bool> requested_ = false;
  std::atomic<bool> ending_ = false;
  std::thread watcher_;
};

}  // namespace tessaly::cli
