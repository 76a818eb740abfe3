// How far long work is, on standard error: a bar that is redrawn on a terminal, lines elsewhere.
//
// Safe from several threads.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>

namespace tessaly::cli {

class ProgressDisplay {
 public:
  ProgressDisplay();
  ProgressDisplay(const ProgressDisplay&) = delete;
  ProgressDisplay& operator=(const ProgressDisplay&) = delete;
  ~ProgressDisplay();  ///< removes the bar

  /// Redraws the bar, with `text` beside it; does nothing elsewhere than on a terminal.
  void show(std::int64_t completed, std::int64_t total, std::string_view text);

  /// Prints whole lines, above the bar where there is one.
  void print(std::initializer_list<std::string_view> lines);

  [[nodiscard]] bool isTerminal() const { return isTerminal_; }

 private:
  const bool isTerminal_;
  std::mutex lock_;
  std::string bar_;
};

}  // namespace tessaly::cli
