// Checks that need a user without the superuser's powers, for tests that may run as the superuser.
#pragma once

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <stdexcept>

namespace tessaly::tests {

inline constexpr uid_t ordinaryUser = 65534;  // "nobody"

/// Runs `check` in a child process that may not do more than an ordinary user, and gives its answer (0 … 255). The
/// calling process must have no other threads.
[[nodiscard]] inline int asOrdinaryUser(const std::function<int()>& check) {
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("Cannot make a process");
  if (child == 0) {
    const bool changed = ::geteuid() != 0 || (::setresgid(ordinaryUser, ordinaryUser, ordinaryUser) == 0 &&
                                              ::setresuid(ordinaryUser, ordinaryUser, ordinaryUser) == 0);
    ::_exit(changed ? check() : 255);
  }
  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
  }
  if (!WIFEXITED(status)) throw std::runtime_error("The check ended by a signal");
  return WEXITSTATUS(status);
}

}  // namespace tessaly::tests
