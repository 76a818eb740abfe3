// help [COMMAND…]: what --help after a command prints.
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Failures.h"
#include "platform/Text.h"

#include <vector>

namespace tessaly::cli {
namespace {

struct HelpOptions {
  const CLI::App* app = nullptr;
  std::vector<std::string> words;
};

const CLI::App& subcommand(const CLI::App& parent, const std::string& word) {
  const auto found = parent.get_subcommands([&word](const CLI::App* command) { return command->get_name() == word; });
  if (found.empty()) throw UsageError("Unknown command: " + displayText(word));
  return *found.front();
}

ExitStatus help(const HelpOptions& options, const Context&) {
  const CLI::App* command = options.app;
  std::string called = command->get_name();
  for (const std::string& word : options.words) {
    command = &subcommand(*command, word);
    called += " " + word;
  }
  Console::write(command->get_formatter()->make_help(command, called, CLI::AppFormatMode::Normal));
  return ExitStatus::done;
}

}  // namespace

void addHelp(Program& program) {
  auto options = std::make_shared<HelpOptions>();
  options->app = &program.app;
  CLI::App* command = addCommand(program, program.app, "help", "Describe the program or a command");
  command->add_option("COMMAND", options->words, "The command, as it is called")->type_name("");
  setAction(program, command, options, help);
}

}  // namespace tessaly::cli
