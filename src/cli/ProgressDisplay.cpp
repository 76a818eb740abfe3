#include "cli/ProgressDisplay.h"

#include "cli/Console.h"
#include "platform/VisibleText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tessaly::cli {
namespace {

constexpr std::int64_t barCells = 24;
constexpr std::int64_t fewestCells = 4;
constexpr double shortestPace = 1;  ///< seconds that tell how fast the work goes
constexpr std::string_view clearLine = "\r\x1b[K";

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The start of the text that fits into the columns, so that the line never wraps. Characters from U+1000 on count as
/// wide ones.
std::string_view fitted(std::string_view text, std::size_t columns) {
  std::size_t used = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (continuesCharacter(text[i])) continue;
    used += static_cast<unsigned char>(text[i]) >= 0xE1 ? 2 : 1;
    if (used > columns) return text.substr(0, i);
  }
  return text;
}

std::string clockText(std::int64_t seconds) {
  const std::int64_t minutes = seconds / 60;
  if (minutes < 60) return fmt::format("{}:{:02}", minutes, seconds % 60);
  return fmt::format("{}:{:02}:{:02}", minutes / 60, minutes % 60, seconds % 60);
}

std::string paceText(const std::optional<Pace>& pace) {
  return pace ? fmt::format(" {:.1f}/s {}", pace->perSecond, clockText(pace->secondsLeft)) : "";
}

std::string barText(std::int64_t completed, std::int64_t total, std::int64_t cells) {
  const std::int64_t filled = std::clamp<std::int64_t>(completed, 0, total) * cells / std::max<std::int64_t>(total, 1);
  return fmt::format("[{:#<{}}{:.<{}}] ", "", filled, "", cells - filled);
}

/// A terminal that obeys nothing but characters cannot take a line back.
bool takesLinesBack() {
  const char* kind = std::getenv("TERM");
  return !kind || std::string_view(kind) != "dumb";
}

}  // namespace

std::string progressText(std::int64_t completed, std::int64_t total, const std::optional<Pace>& pace,
                         std::string_view text, std::size_t columns) {
  constexpr std::size_t frame = 4;  // the bar's brackets, the blank behind them and the last column, which stays free
  const std::string counts = fmt::format("{}/{}{}", completed, total, paceText(pace));
  const std::size_t room = columns > counts.size() + frame ? columns - counts.size() - frame : 0;
  const std::int64_t cells = std::min(barCells, static_cast<std::int64_t>(room));
  const std::string line = (cells >= fewestCells ? barText(completed, total, cells) : "") + counts;
  if (line.size() + 1 > columns) return std::string(fitted(line, columns - 1));
  return line + std::string(fitted("  " + std::string(text), columns - 1 - line.size()));
}

ProgressDisplay::ProgressDisplay()
    : isTerminal_(Console::isTerminal()),
      redraws_(isTerminal_ && takesLinesBack()),
      start_(std::chrono::steady_clock::now()) {}

ProgressDisplay::~ProgressDisplay() {
  clear();
}

void ProgressDisplay::clear() {
  const std::lock_guard guard(lock_);
  if (!bar_.empty()) Console::draw(clearLine);
  bar_.clear();
}

std::optional<Pace> ProgressDisplay::pace(std::int64_t completed, std::int64_t total) const {
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  if (completed <= 0 || seconds < shortestPace) return std::nullopt;
  const double perSecond = static_cast<double>(completed) / seconds;
  const double left = static_cast<double>(std::max<std::int64_t>(total - completed, 0)) / perSecond;
  return Pace{perSecond, static_cast<std::int64_t>(std::ceil(left))};
}

void ProgressDisplay::show(std::int64_t completed, std::int64_t total, std::string_view text) {
  if (!redraws_) return;
  const std::lock_guard guard(lock_);
  bar_ = progressText(completed, total, pace(completed, total), visibleText(text), Console::terminalWidth());
  Console::draw(std::string(clearLine) + bar_);
}

void ProgressDisplay::print(std::initializer_list<std::string_view> lines) {
  const std::lock_guard guard(lock_);
  if (!bar_.empty()) Console::draw(clearLine);
  for (const std::string_view line : lines)
    Console::note(line);
  if (!bar_.empty()) Console::draw(bar_);
}

}  // namespace tessaly::cli
