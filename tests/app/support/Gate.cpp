#include "app/support/Gate.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <condition_variable>
#include <mutex>

namespace tessaly::tests {
namespace {

std::mutex mutex;
std::condition_variable changed;
bool isClosed = false;

void set(bool closed) {
  const std::lock_guard lock(mutex);
  isClosed = closed;
  changed.notify_all();
}

bool isFirstThread() {
  return ::syscall(SYS_gettid) == ::getpid();
}

void pass() {
  if (isFirstThread()) return;
  std::unique_lock lock(mutex);
  changed.wait(lock, [] { return !isClosed; });
}

}  // namespace

Gate::Gate() {
  set(true);
}

void Gate::open() {
  set(false);
}

}  // namespace tessaly::tests

// The program's own function of this name goes before the C library's.
extern "C" int fsync(int descriptor) {
  tessaly::tests::pass();
  return static_cast<int>(::syscall(SYS_fsync, descriptor));
}
