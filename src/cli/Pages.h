// What is made of the grammar besides the help: the manual page, and the completions of three shells.
//
// Pure functions; the same grammar gives the same bytes.
#pragma once

#include "cli/Grammar.h"

#include <string>
#include <string_view>

namespace tessaly::cli::Pages {

/// tessaly-cli(1), in the language of man.
[[nodiscard]] std::string manual(const CommandDescription& program, std::string_view version);

[[nodiscard]] std::string bash(const CommandDescription& program);
[[nodiscard]] std::string zsh(const CommandDescription& program);
[[nodiscard]] std::string fish(const CommandDescription& program);

}  // namespace tessaly::cli::Pages
