#include "cli/Interruption.h"

#include "cli/Failures.h"

#include <pthread.h>
#include <signal.h>

#include <utility>

namespace tessaly::cli {
namespace {

sigset_t interruptSignal() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  return signals;
}

}  // namespace

Interruption::Interruption() {
  const sigset_t signals = interruptSignal();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // inherited by every thread that is started from now on
  watcher_ = std::thread([this] { watch(); });
}

Interruption::~Interruption() {
  ending_ = true;
  pthread_kill(watcher_.native_handle(), SIGINT);
  watcher_.join();
}

void Interruption::watch() {
  const sigset_t signals = interruptSignal();
  for (int received = 0; sigwait(&signals, &received) == 0 && !ending_;) {
    const std::lock_guard guard(lock_);
    requested_ = true;
    if (handler_) handler_();
  }
}

void Interruption::check() const {
  if (requested_) throw Interrupted();
}

void Interruption::setHandler(std::function<void()> handler) {
  const std::lock_guard guard(lock_);
  handler_ = std::move(handler);
  if (handler_ && requested_) handler_();
}

Interruption::Handler::Handler(Interruption& interruption, std::function<void()> handler)
    : interruption_(interruption) {
  interruption_.setHandler(std::move(handler));
}

Interruption::Handler::~Handler() {
  interruption_.setHandler({});
}

}  // namespace tessaly::cli
