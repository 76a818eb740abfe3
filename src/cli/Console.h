// Standard output for the result, standard error for everything else.
//
// Lines on standard error are whole, also from several threads.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace tessaly::cli::Console {

/// Throws CommandFailure when standard output takes no more (a closed pipe, a full disk) or is closed. A text is made
/// visible for a terminal (see VisibleText.h); bytes never change.
void write(std::string_view text);
void write(std::span<const std::byte> bytes);

/// One line on standard error; that it cannot be written is no failure.
void note(std::string_view line);

/// Lines that belong together: all of them or, when one cannot be made, none.
void note(std::initializer_list<std::string_view> lines);

/// The same for a text of several lines, which stay apart.
void tell(std::string_view lines);

/// The same without an end of line and without changing a character, for what a terminal draws.
void draw(std::string_view text);

/// Whether standard error is one; `outputIsTerminal`: whether standard output is.
[[nodiscard]] bool isTerminal();
[[nodiscard]] bool outputIsTerminal();

/// The number of columns of the terminal on standard error.
[[nodiscard]] std::size_t terminalWidth();

/// The text with a blank for every control character and line break, so that a file's name can break no line of what
/// other programs read. A terminal gets visibleText instead.
[[nodiscard]] std::string singleLine(std::string_view text);

/// Makes the standard descriptors safe to use: with one of them closed the next file opened would take its number and
/// receive what is meant for it. A failed write must be an error, not a signal.
void prepare();

}  // namespace tessaly::cli::Console
