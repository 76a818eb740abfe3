#include "cli/Interruption.h"

#include "cli/Console.h"
#include "cli/Failures.h"
#include "platform/PartialFile.h"

#include <exception>
#include <utility>

namespace tessaly::cli {

Interruption::Interruption() : watcher_([this] { watch(); }) {}

Interruption::~Interruption() {
  if (watcher_.joinable()) static_cast<void>(finish());
}

int Interruption::finish() {
  ending_ = true;
  signals_.wake();
  watcher_.join();
  if (const int late = signals_.take()) request(late);
  return signal_;
}

void Interruption::watch() {
  while (!ending_) {
    if (const int signal = signals_.wait()) request(signal);
  }
}

void Interruption::request(int signal) {
  if (signal_ != 0) {
    if (Console::isTerminal()) Console::draw("\n");  // below the bar, which nobody is left to remove
    PartialFile::removeAllAndExit(statusEndedBy(signal));
  }
  const std::lock_guard guard(lock_);
  signal_ = signal;
  callHandler();
}

// What it cannot say for want of memory is no reason to end at once.
void Interruption::callHandler() const noexcept {
  try {
    if (handler_) handler_();
  } catch (const std::exception&) {
  }
}

void Interruption::check() const {
  if (isRequested()) throw Interrupted();
}

void Interruption::setHandler(std::function<void()> handler) {
  const std::lock_guard guard(lock_);
  handler_ = std::move(handler);
  if (isRequested()) callHandler();
}

Interruption::Handler::Handler(Interruption& interruption, std::function<void()> handler)
    : interruption_(interruption) {
  interruption_.setHandler(std::move(handler));
}

Interruption::Handler::~Handler() {
  interruption_.setHandler({});
}

}  // namespace tessaly::cli
