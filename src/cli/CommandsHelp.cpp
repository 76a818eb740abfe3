// help [COMMAND…]: what --help after a command prints.
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Failures.h"
#include "cli/Pages.h"
#include "platform/Text.h"

#include <vector>

namespace tessaly::cli {
namespace {

struct HelpOptions {
  Command program;
  std::vector<std::string> words;
  std::string page;
};

std::string pageOf(const Command& program, const std::string& kind) {
  const CommandDescription description = program.describe();
  if (kind == "bash") return Pages::bash(description);
  if (kind == "zsh") return Pages::zsh(description);
  if (kind == "fish") return Pages::fish(description);
  return Pages::manual(description, TESSALY_VERSION);
}

Command subcommand(const Command& parent, const std::string& word) {
  const auto found = parent.find(word);
  if (!found) throw UsageError("Unknown command: " + displayText(word));
  return *found;
}

ExitStatus help(const HelpOptions& options, const Context&) {
  if (!options.page.empty()) {
    Console::write(pageOf(options.program, options.page));
    return ExitStatus::done;
  }
  Command command = options.program;
  std::string called = command.name();
  for (const std::string& word : options.words) {
    command = subcommand(command, word);
    called += " " + word;
  }
  Console::write(command.help(called));
  return ExitStatus::done;
}

}  // namespace

void addHelp(Program& program) {
  auto options = std::make_shared<HelpOptions>(HelpOptions{program.grammar.program(), {}, {}});
  Command command = addCommand(program, "help", "Describe the program or a command");
  command.addOperand("COMMAND", options->words, "The command, as it is called").canBeLeftOut();
  command.addOption("--page", options->page, "man|bash|zsh|fish", "Print this instead, for packages and shells")
      .oneOf({"man", "bash", "zsh", "fish"})
      .hide();
  setAction(program, command, options, help);
}

}  // namespace tessaly::cli
