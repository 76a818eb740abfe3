// Runs the real program in a folder of its own, as a shell would, and keeps what it prints.
#pragma once

#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <signal.h>
#include <stdlib.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tessaly::tests {

struct ProgramResult {
  int status = -1;  ///< of the exit; 128 + its number for a signal
  std::string output;
  std::string errors;
};

inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::string line;
  for (const char character : text) {
    if (character == '\n') lines.push_back(std::exchange(line, ""));
    if (character != '\n') line += character;
  }
  if (!line.empty()) lines.push_back(line);
  return lines;
}

inline std::vector<std::string> keysOf(const nlohmann::ordered_json& object) {
  std::vector<std::string> keys;
  for (const auto& item : object.items())
    keys.push_back(item.key());
  return keys;
}

class ProgramTest : public testing::Test {
 protected:
  using Arguments = std::vector<std::string>;

  /// Starts the program in `folder`; `prepare` runs in the new process before.
  pid_t start(const Arguments& arguments, const std::function<void()>& prepare = nullptr) {
    const std::string program = TESSALY_CLI;
    std::vector<char*> pointers{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments)
      pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    const pid_t process = fork();
    if (process != 0) return process;
    redirect(STDOUT_FILENO, outputFile);
    redirect(STDERR_FILENO, errorFile);
    setEnvironment();
    if (chdir(folder.path().c_str()) != 0) _exit(126);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
      signal(number, SIG_DFL);  // what these tests were started with may ignore some of them
    if (prepare) prepare();
    execv(program.c_str(), pointers.data());
    _exit(127);
  }

  ProgramResult finish(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), readText(outputFile),
            readText(errorFile)};
  }

  ProgramResult run(const Arguments& arguments, const std::function<void()>& prepare = nullptr) {
    return finish(start(arguments, prepare));
  }

  [[nodiscard]] std::string errorsSoFar() const {
    return std::filesystem::exists(errorFile) ? readText(errorFile) : "";
  }

  tests::TemporaryFolder scratch;  ///< for what is no business of the program
  tests::TemporaryFolder folder;   ///< where the program runs
  std::filesystem::path home = scratch / "home";
  std::map<std::string, std::string> environment;  ///< additions to the plain one

 private:
  static void redirect(int descriptor, const std::filesystem::path& file) {
    const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    dup2(opened, descriptor);
    close(opened);
  }

  void setEnvironment() {
    for (const char* name : {"LANG", "LANGUAGE", "LC_ALL", "LC_MESSAGES"})
      unsetenv(name);
    setenv("TESSALY_HOME", home.c_str(), 1);
    setenv("TERM", "xterm", 1);
    for (const auto& [name, value] : environment)
      setenv(name.c_str(), value.c_str(), 1);
  }

  std::filesystem::path outputFile = scratch / "output";
  std::filesystem::path errorFile = scratch / "errors";
};

}  // namespace tessaly::tests
