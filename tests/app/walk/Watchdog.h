// Ends the program when its user interface has not answered for too long.
//
// Made by the user-interface thread. What that thread waits for a processor does not count: another program's load is
// no hang.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>

namespace tessaly::tests {

class Watchdog {
 public:
  explicit Watchdog(std::chrono::milliseconds limit);

  /// The user interface answers.
  void beat() { ++beats_; }

 private:
  void watch(const std::stop_token& stop) const;

  std::chrono::milliseconds limit_;
  std::string statistics_;  ///< of the user-interface thread
  std::atomic<std::uint64_t> beats_ = 0;
  std::jthread thread_;  ///< last, so that it is gone before what it looks at
};

}  // namespace tessaly::tests
