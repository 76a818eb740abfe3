#include "cli/ProgressDisplay.h"

#include "cli/Console.h"
#include "platform/VisibleText.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaly::cli {
namespace {

constexpr std::int64_t barCells = 24;
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

std::string barText(std::int64_t completed, std::int64_t total, std::string_view text) {
  const std::int64_t filled =
      std::clamp<std::int64_t>(completed, 0, total) * barCells / std::max<std::int64_t>(total, 1);
  const std::string bar = fmt::format("[{:#<{}}{:.<{}}] {}/{}  ", "", filled, "", barCells - filled, completed, total);
  const std::size_t columns = Console::terminalWidth();
  const std::size_t room = columns > bar.size() + 1 ? columns - bar.size() - 1 : 0;
  return bar + std::string(fitted(text, room));
}

}  // namespace

ProgressDisplay::ProgressDisplay() : isTerminal_(Console::isTerminal()) {}

ProgressDisplay::~ProgressDisplay() {
  if (!bar_.empty()) Console::draw(clearLine);
}

void ProgressDisplay::show(std::int64_t completed, std::int64_t total, std::string_view text) {
  if (!isTerminal_) return;
  const std::lock_guard guard(lock_);
  bar_ = barText(completed, total, visibleText(text));
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
