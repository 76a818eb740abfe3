#include "app/walk/Watchdog.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

namespace tessaly::tests {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::nanoseconds;

constexpr std::chrono::milliseconds interval(50);

/// How long the thread has waited for a processor since it began; zero where the system does not count it.
nanoseconds waitedForProcessor(const std::string& statistics) {
  std::int64_t run = 0;
  std::int64_t waited = 0;
  std::ifstream(statistics) >> run >> waited;
  return nanoseconds(waited);
}

}  // namespace

Watchdog::Watchdog(std::chrono::milliseconds limit)
    : limit_(limit),
      statistics_("/proc/self/task/" + std::to_string(::syscall(SYS_gettid)) + "/schedstat"),
      thread_([this](const std::stop_token& stop) { watch(stop); }) {}

void Watchdog::watch(const std::stop_token& stop) const {
  std::uint64_t known = 0;
  nanoseconds since{};
  while (!stop.stop_requested()) {
    std::this_thread::sleep_for(interval);
    const nanoseconds own = Clock::now().time_since_epoch() - waitedForProcessor(statistics_);
    if (const std::uint64_t beats = beats_; beats != known || known == 0) {
      known = beats;
      since = own;
    } else if (own - since > limit_) {
      std::cerr << "The user interface has not answered for " << limit_.count() << " ms\n";
      std::abort();
    }
  }
}

}  // namespace tessaly::tests
