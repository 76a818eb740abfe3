// Runs installed programs as witnesses of what was written. A test that needs one skips where it is absent.
#pragma once

#include <stdio.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace tessaly::tests {

[[nodiscard]] inline bool isInstalled(const std::string& program) {
  return std::system(("command -v " + program + " > /dev/null 2>&1").c_str()) == 0;
}

/// Standard output and standard error together; `command` is read by the shell.
[[nodiscard]] inline std::string outputOf(const std::string& command) {
  FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("Cannot run " + command);
  std::string output;
  std::array<char, 4096> chunk{};
  while (const std::size_t count = fread(chunk.data(), 1, chunk.size(), pipe))
    output.append(chunk.data(), count);
  pclose(pipe);
  return output;
}

/// A path as one word of the shell.
[[nodiscard]] inline std::string quoted(const std::filesystem::path& path) {
  std::string word = "'";
  for (const char letter : path.native())
    word += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
  return word + "'";
}

}  // namespace tessaly::tests
