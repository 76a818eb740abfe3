// Whether another process would be told of a signal: what a test waits for before it sends one.
#pragma once

#include <sys/types.h>

#include <charconv>
#include <cstdint>
#include <fstream>
#include <string>

namespace tessaly::tests {

[[nodiscard]] inline bool catches(pid_t process, int signal) {
  constexpr int hexadecimal = 16;
  const std::string key = "SigCgt:\t";
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (!line.starts_with(key)) continue;
    std::uint64_t caught = 0;
    std::from_chars(line.data() + key.size(), line.data() + line.size(), caught, hexadecimal);
    return (caught >> (signal - 1) & 1) != 0;
  }
  return false;
}

}  // namespace tessaly::tests
