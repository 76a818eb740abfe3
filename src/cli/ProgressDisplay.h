// How far long work is, on standard error: a bar that is redrawn on a terminal, lines elsewhere.
//
// Safe from several threads.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace tessaly::cli {

/// What the bar tells besides how much is done.
struct Pace {
  double perSecond = 0;
  std::int64_t secondsLeft = 0;
};

/// The line that is drawn, never wider than the columns: counts, pace and, where there is room, a bar and the text.
[[nodiscard]] std::string progressText(std::int64_t completed, std::int64_t total, const std::optional<Pace>& pace,
                                       std::string_view text, std::size_t columns);

class ProgressDisplay {
 public:
  ProgressDisplay();
  ProgressDisplay(const ProgressDisplay&) = delete;
  ProgressDisplay& operator=(const ProgressDisplay&) = delete;
  ~ProgressDisplay();  ///< removes the bar

  /// Redraws the bar, with the pace and `text` beside it; does nothing elsewhere than on a terminal that can redraw.
  void show(std::int64_t completed, std::int64_t total, std::string_view text);

  /// Removes the bar for good.
  void clear();

  /// Prints whole lines, above the bar where there is one.
  void print(std::initializer_list<std::string_view> lines);

  [[nodiscard]] bool isTerminal() const { return isTerminal_; }

 private:
  [[nodiscard]] std::optional<Pace> pace(std::int64_t completed, std::int64_t total) const;

  const bool isTerminal_;
  const bool redraws_;
  const std::chrono::steady_clock::time_point start_;
  std::mutex lock_;
  std::string bar_;
};

}  // namespace tessaly::cli
