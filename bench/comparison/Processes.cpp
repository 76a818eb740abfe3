#include "comparison/Processes.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace tessaly::bench {
namespace {

using Clock = std::chrono::steady_clock;

double milliseconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

/// The last of the processors that this program may use.
void bindToOneProcessor() {
  cpu_set_t allowed;
  ::sched_getaffinity(0, sizeof allowed, &allowed);
  for (std::size_t processor = CPU_SETSIZE; processor-- > 0;) {
    if (!CPU_ISSET(processor, &allowed)) continue;
    CPU_ZERO(&allowed);
    CPU_SET(processor, &allowed);
    break;
  }
  ::sched_setaffinity(0, sizeof allowed, &allowed);
}

[[noreturn]] void become(const Command& command, bool isBound) {
  if (isBound) bindToOneProcessor();
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  ::dup2(nowhere, STDOUT_FILENO);
  ::dup2(nowhere, STDERR_FILENO);
  std::vector<char*> words;
  words.reserve(command.size() + 1);
  for (const std::string& word : command)
    words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  ::execvp(words.front(), words.data());
  ::_exit(127);
}

Cost costOf(const Command& command, bool isBound) {
  const Clock::time_point start = Clock::now();
  const pid_t child = ::fork();
  if (child == 0) become(command, isBound);
  int status = -1;
  rusage usage{};
  while (::wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {
  }
  if (status != 0) throw std::runtime_error(fmt::format("It failed: {}", fmt::join(command, " ")));
  return {std::chrono::duration<double, std::milli>(Clock::now() - start).count(),
          milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime), static_cast<double>(usage.ru_maxrss) / 1024};
}

}  // namespace

Cost costOf(const std::vector<Command>& commands, bool isBound) {
  Cost sum;
  for (const Command& command : commands) {
    const Cost cost = costOf(command, isBound);
    sum.milliseconds += cost.milliseconds;
    sum.processorMilliseconds += cost.processorMilliseconds;
    sum.peakMiB = std::max(sum.peakMiB, cost.peakMiB);
  }
  return sum;
}

bool isInstalled(const std::string& program) {
  const char* variable = std::getenv("PATH");
  std::string_view folders = variable ? variable : "";
  while (!folders.empty()) {
    const std::size_t length = std::min(folders.find(':'), folders.size());
    if (::access((std::filesystem::path(folders.substr(0, length)) / program).c_str(), X_OK) == 0) return true;
    folders.remove_prefix(std::min(length + 1, folders.size()));
  }
  return false;
}

}  // namespace tessaly::bench
