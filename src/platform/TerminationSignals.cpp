#include "platform/TerminationSignals.h"

#include "platform/SystemCall.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace tessaly {
namespace {

/// A signal may come at any moment, in which hardly anything may be done but writing to a file.
std::array<int, 2> ends{-1, -1};

constexpr unsigned char wakingMark = 0;

/// Whether there is something to read now; one that is full has enough.
bool mark(unsigned char byte) {
  return ::write(ends[1], &byte, sizeof byte) == sizeof byte || errno == EAGAIN;
}

void handle(int number) {
  const int before = errno;
  static_cast<void>(mark(static_cast<unsigned char>(number)));
  errno = before;
}

}  // namespace

TerminationSignals::TerminationSignals() {
  callSystem([] { return ::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK); });
  struct sigaction action {};
  action.sa_handler = handle;
  action.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    ::sigaction(numbers[i], nullptr, &before_[i]);
    if (before_[i].sa_handler != SIG_IGN) ::sigaction(numbers[i], &action, nullptr);
  }
}

TerminationSignals::~TerminationSignals() {
  for (std::size_t i = 0; i < numbers.size(); ++i)
    ::sigaction(numbers[i], &before_[i], nullptr);
  for (const int end : ends)
    ::close(end);
}

int TerminationSignals::descriptor() const {
  return ends[0];
}

int TerminationSignals::take() {
  int first = 0;
  unsigned char byte = wakingMark;
  while (retryWhenInterrupted([&] { return ::read(ends[0], &byte, sizeof byte); }) > 0) {
    if (first == 0) first = byte;
  }
  return first;
}

int TerminationSignals::wait() {
  pollfd readable{ends[0], POLLIN, 0};
  static_cast<void>(retryWhenInterrupted([&] { return ::poll(&readable, 1, -1); }));
  return take();
}

// Until it is done: whoever waits would otherwise wait for ever.
void TerminationSignals::wake() {
  while (!mark(wakingMark)) {
  }
}

}  // namespace tessaly
