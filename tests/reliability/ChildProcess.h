// A program that a test starts, disturbs and ends.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tessaly::tests {

/// Owned by one test; a program that is still running at the end is killed.
class ChildProcess {
 public:
  /// Starts the program with its standard output going into `output`. `prepare` runs in the new process before.
  ChildProcess(const std::vector<std::string>& command, const std::filesystem::path& output,
               const std::function<void()>& prepare = nullptr) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
      arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    process_ = ::fork();
    if (process_ < 0) throw std::runtime_error("Cannot make a process");
    if (process_ == 0) {
      const int descriptor = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
      ::dup2(descriptor, STDOUT_FILENO);
      if (prepare) prepare();
      ::execv(arguments.front(), arguments.data());
      ::_exit(127);
    }
  }

  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  ~ChildProcess() {
    if (process_ < 0) return;
    kill();
    static_cast<void>(wait());
  }

  [[nodiscard]] bool hasEnded() const {
    siginfo_t ended{};
    return ::waitid(P_PID, static_cast<id_t>(process_), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid != 0;
  }

  void kill() const { ::kill(process_, SIGKILL); }

  /// Waits for the end: the exit status, or 128 + the number of the signal that ended the program.
  [[nodiscard]] int wait() {
    const pid_t process = std::exchange(process_, -1);
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

 private:
  pid_t process_ = -1;
};

}  // namespace tessaly::tests
