// tessaly-cli: the engine without a window, for scripts, servers and tests.
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Failures.h"
#include "cli/Interruption.h"
#include "localization/Localization.h"
#include "platform/Text.h"
#include "preferences/AppLanguage.h"

#include <sstream>

namespace tessaly::cli {
namespace {

void tell(const FailureText& text) {
  Console::note(text.description);
  Console::note("Cause: " + text.cause);
}

/// The line of the help that shows how the command is called.
std::string usageLine(const CLI::App& app) {
  std::istringstream help(app.help());
  for (std::string line; std::getline(help, line);) {
    if (line.starts_with("Usage:")) return line;
  }
  return "";
}

ExitStatus refuseUsage(const Program& program, std::string_view reason) {
  Console::note("tessaly-cli: " + std::string(reason));
  Console::note(usageLine(program.app));
  Console::note("Run with --help for more information.");
  return ExitStatus::usage;
}

/// CLI11 misses what is required before it looks at what is too much; a misspelled word is why something is missing.
std::string reasonFor(const Program& program, const CLI::ParseError& error) {
  const CLI::App* command = &program.app;
  while (!command->get_subcommands().empty())
    command = command->get_subcommands().front();
  for (const std::string& word : program.app.remaining(true)) {
    if (word.starts_with("-")) return "Unknown option: " + displayText(word);
    if (command->get_require_subcommand_min() > 0) return "Unknown command: " + displayText(word);
  }
  return error.what();
}

/// Nothing when there is an action to run; else the program ends.
std::optional<ExitStatus> parseOrEnd(Program& program, int count, const char* const* arguments) {
  try {
    parse(program, count, arguments);
    return std::nullopt;
  } catch (const CLI::CallForHelp&) {
    Console::write(program.app.help());
  } catch (const CLI::CallForVersion& version) {
    Console::write(std::string(version.what()) + "\n");
  } catch (const CLI::ParseError& error) {
    return refuseUsage(program, reasonFor(program, error));
  }
  return ExitStatus::done;
}

ExitStatus runAction(const Program& program, Interruption& interruption) {
  const Context context{interruption};
  const ExitStatus status = program.action(context);
  const int signal = interruption.finish();
  return signal != 0 ? stoppedBy(signal) : status;
}

ExitStatus run(int count, const char* const* arguments, Interruption& interruption) {
  Program program;
  for (const auto add : {addInspect, addSamples, addCalibrate, addRepair, addRepairFile, addProfiles, addHelp})
    add(program);
  try {
    if (const auto ended = parseOrEnd(program, count, arguments)) return *ended;
    Localization::setLanguageOverride(appLanguage(program.language));
    return runAction(program, interruption);
  } catch (const Interrupted&) {
    return stoppedBy(interruption.signal());
  } catch (const UsageError& error) {
    return refuseUsage(program, error.what());
  } catch (const CommandFailure& failure) {
    tell(failure.text());
    if (!failure.remark().empty()) Console::note(failure.remark());
  } catch (const std::exception& error) {
    tell(failureText(error, ""));
  }
  return ExitStatus::failed;
}

}  // namespace
}  // namespace tessaly::cli

int main(int count, char** arguments) {
  using namespace tessaly::cli;
  Console::prepare();
  try {
    Interruption interruption;
    return static_cast<int>(run(count, arguments, interruption));
  } catch (const std::exception& error) {
    tell(tessaly::failureText(error, ""));
    return static_cast<int>(ExitStatus::failed);
  }
}
