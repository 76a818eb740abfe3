// What every caller of the system does with its answer: call again when a signal interrupted it, throw when it failed.
#pragma once

#include <cerrno>
#include <system_error>

namespace tessaly {

[[noreturn]] inline void throwSystemError(int errorNumber) {
  throw std::system_error(errorNumber, std::generic_category());
}

/// Repeats `call`, which answers -1 for a failure with the reason in errno, as long as a signal interrupts it.
template <typename Call>
[[nodiscard]] auto retryWhenInterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR)
    result = call();
  return result;
}

/// The same; any other failure is thrown as std::system_error.
template <typename Call>
auto callSystem(Call call) {
  const auto result = retryWhenInterrupted(call);
  if (result < 0) throwSystemError(errno);
  return result;
}

}  // namespace tessaly
