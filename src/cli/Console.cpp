#include "cli/Console.h"

#include "cli/Failures.h"
#include "platform/VisibleText.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace tessaly::cli::Console {
namespace {

constexpr std::size_t assumedWidth = 80;

/// Writes everything; gives 0 or the error's number.
int writeAll(int descriptor, std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) return errno;
    if (written > 0) bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return 0;
}

std::span<const std::byte> bytesOf(std::string_view text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

/// The length of the control character or line break at the start of the text; 0 when there is none. U+0080 to U+009F,
/// which some terminals obey, are C2 80 to C2 9F; U+2028 and U+2029 separate lines and paragraphs.
std::size_t controlLength(std::string_view text) {
  const auto byte = static_cast<unsigned char>(text.front());
  if (byte < 0x20 || byte == 0x7F) return 1;
  if (text.size() >= 2 && byte == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0) return 2;
  return text.starts_with("\u2028") || text.starts_with("\u2029") ? 3 : 0;
}

}  // namespace

void write(std::span<const std::byte> bytes) {
  const int error = writeAll(STDOUT_FILENO, bytes);
  if (error != 0) throw CommandFailure(std::system_error(error, std::generic_category()), "Standard output");
}

void write(std::string_view text) {
  write(bytesOf(outputIsTerminal() ? visibleLines(text) : text));
}

void draw(std::string_view text) {
  writeAll(STDERR_FILENO, bytesOf(text));
}

void note(std::string_view line) {
  note({line});
}

void note(std::initializer_list<std::string_view> lines) {
  std::string text;
  for (const std::string_view line : lines)
    text.append(isTerminal() ? visibleText(line) : singleLine(line)).append("\n");
  draw(text);
}

void tell(std::string_view lines) {
  draw((isTerminal() ? visibleLines(lines) : std::string(lines)) + "\n");
}

bool isTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

bool outputIsTerminal() {
  return isatty(STDOUT_FILENO) == 1;
}

std::size_t terminalWidth() {
  winsize size{};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : assumedWidth;
}

std::string singleLine(std::string_view text) {
  std::string line;
  while (!text.empty()) {
    const std::size_t control = controlLength(text);
    line += control > 0 ? ' ' : text.front();
    text.remove_prefix(std::max<std::size_t>(control, 1));
  }
  return line;
}

void prepare() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // For reading only, so that a result that nobody could receive still is a failure.
    if (fcntl(descriptor, F_GETFD) < 0) static_cast<void>(::open("/dev/null", O_RDONLY));
  }
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
}

}  // namespace tessaly::cli::Console
