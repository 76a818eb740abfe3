// Runs operations on a bounded number of threads of its own.
//
// submit() and wait() belong to one thread, the queue's owner; the operations run at the same time as each other and as
// the owner. An exception that leaves an operation ends that operation and nothing else.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace tessaly {

class WorkQueue {
 public:
  /// Learns the number of the worker that runs it, 0 … maximumConcurrency − 1, for the use of what that worker keeps
  /// from one operation to the next.
  using Operation = std::function<void(std::size_t worker)>;

  /// The threads bear the name, as far as the system shows it. Where the system grants fewer threads than asked the
  /// queue does with those; where it grants none, wait() runs the operations itself.
  WorkQueue(std::string name, std::size_t maximumConcurrency);
  WorkQueue(const WorkQueue&) = delete;
  WorkQueue& operator=(const WorkQueue&) = delete;
  ~WorkQueue();  ///< waits for every operation

  /// Operations start in the order in which they were submitted.
  void submit(Operation operation);

  /// Returns when every submitted operation has ended and what it held is released.
  void wait();

 private:
  void work(const std::stop_token& stop, std::size_t worker);
  [[nodiscard]] std::optional<Operation> take(const std::stop_token& stop);
  void perform(Operation operation, std::size_t worker);

  std::string name_;
  std::mutex lock_;  ///< guards pending_ and unfinished_
  std::condition_variable_any available_;
  std::condition_variable_any finished_;
  std::deque<Operation> pending_;
  std::size_t unfinished_ = 0;
  std::vector<std::jthread> threads_;  ///< last, so that the threads end before what they use
};

}  // namespace tessaly
