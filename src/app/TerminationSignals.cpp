#include "app/TerminationSignals.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <system_error>
#include <utility>

namespace tessaly {
namespace {

constexpr int terminationSignals[] = {SIGINT, SIGTERM, SIGHUP};

/// A signal may come at any moment, in which hardly anything may be done but writing to a file.
std::array<int, 2> ends{-1, -1};

void handle(int) {
  const int before = errno;
  constexpr char mark = 0;
  [[maybe_unused]] const ssize_t written = ::write(ends[1], &mark, sizeof mark);  // full: enough has been asked
  errno = before;
}

/// What whoever started the program wants ignored stays ignored.
void setHandlers(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  for (const int signal : terminationSignals) {
    struct sigaction present {};
    ::sigaction(signal, nullptr, &present);
    if (present.sa_handler != SIG_IGN) ::sigaction(signal, &action, nullptr);
  }
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> requested) : requested_(std::move(requested)) {
  if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) throw std::system_error(errno, std::generic_category());
  auto* notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, &TerminationSignals::received);
  setHandlers(handle);
}

TerminationSignals::~TerminationSignals() {
  setHandlers(SIG_DFL);
  for (const int end : ends)
    ::close(end);
}

void TerminationSignals::received() {
  std::array<char, 16> marks{};
  while (::read(ends[0], marks.data(), marks.size()) > 0) {
  }
  requested_();
}

}  // namespace tessaly
