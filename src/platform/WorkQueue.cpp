#include "platform/WorkQueue.h"

#include <pthread.h>

#include <exception>
#include <utility>

namespace tessaly {

namespace {

// Linux shows at most 15 characters of a thread's name and refuses longer ones.
constexpr std::size_t longestThreadName = 15;

}  // namespace

WorkQueue::WorkQueue(std::string name, std::size_t maximumConcurrency) : name_(std::move(name)) {
  threads_.reserve(maximumConcurrency);
  try {
    for (std::size_t worker = 0; worker < maximumConcurrency; ++worker) {
      threads_.emplace_back([this, worker](const std::stop_token& stop) { work(stop, worker); });
    }
  } catch (const std::exception&) {
    // The system grants no more threads, or no memory for them, now; fewer do the same work.
  }
}

WorkQueue::~WorkQueue() {
  wait();
}

void WorkQueue::submit(Operation operation) {
  {
    const std::lock_guard guard(lock_);
    pending_.push_back(std::move(operation));
    ++unfinished_;
  }
  available_.notify_one();
}

void WorkQueue::wait() {
  while (threads_.empty() && !pending_.empty())
    perform(*take({}), 0);
  std::unique_lock guard(lock_);
  finished_.wait(guard, [this] { return unfinished_ == 0; });
}

void WorkQueue::work(const std::stop_token& stop, std::size_t worker) {
  pthread_setname_np(pthread_self(), name_.substr(0, longestThreadName).c_str());
  while (std::optional<Operation> operation = take(stop))
    perform(std::move(*operation), worker);
}

std::optional<WorkQueue::Operation> WorkQueue::take(const std::stop_token& stop) {
  std::unique_lock guard(lock_);
  available_.wait(guard, stop, [this] { return !pending_.empty(); });
  if (pending_.empty()) return std::nullopt;
  Operation operation = std::move(pending_.front());
  pending_.pop_front();
  return operation;
}

void WorkQueue::perform(Operation operation, std::size_t worker) {
  try {
    operation(worker);
  } catch (...) {
    // An operation's failure is its own; who submitted it records what matters.
  }
  // Must come before the count: when wait() returns nothing that an operation held may still be alive.
  operation = nullptr;
  const std::lock_guard guard(lock_);
  if (--unfinished_ == 0) finished_.notify_all();
}

}  // namespace tessaly
