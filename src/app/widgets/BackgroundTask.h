// Work off the user-interface thread, one piece at a time, whose results come back to it.
//
// Owned by a widget of the user-interface thread. Destroying the task asks the work to stop and waits for it.
#pragma once

#include <QObject>
#include <functional>
#include <stop_token>
#include <thread>

namespace tessaly {

class BackgroundTask {
 public:
  /// Runs something on the user-interface thread, unless the task's owner is gone by then.
  using Deliver = std::function<void(std::function<void()>)>;
  using Work = std::function<void(const std::stop_token&, const Deliver&)>;

  /// Results are delivered to the thread of `owner`, which outlives the task.
  explicit BackgroundTask(QObject& owner) : owner_(owner) {}

  /// Starts the work; work of an earlier call is asked to stop and waited for, and what it still delivers is dropped.
  void start(Work work);

  /// Drops what the work still delivers, without waiting for its end.
  void forget() { ++current_; }

 private:
  QObject& owner_;
  std::uint64_t current_ = 0;
  std::jthread thread_;
};

}  // namespace tessaly
