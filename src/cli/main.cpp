// tessaly-cli: the engine without a window, for scripts, servers and tests.
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Failures.h"
#include "cli/Interruption.h"
#include "localization/Localization.h"
#include "preferences/AppLanguage.h"

#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace tessaly::cli {
namespace {

void tell(const FailureText& text, std::string_view remark = "") {
  const std::string cause = "Cause: " + text.cause;
  remark.empty() ? Console::note({text.description, cause}) : Console::note({text.description, cause, remark});
}

ExitStatus refuseUsage(const Program& program, std::string_view reason) {
  Console::note("tessaly-cli: " + std::string(reason));
  Console::note(program.grammar.usage());
  Console::note("Run with --help for more information.");
  return ExitStatus::usage;
}

/// Nothing when there is an action to run; else the program ends.
std::optional<ExitStatus> readOrEnd(Program& program, int count, const char* const* arguments) {
  const Reading reading = read(program, count, arguments);
  if (reading.kind == Reading::Kind::command) return std::nullopt;
  if (reading.kind == Reading::Kind::mistake) return refuseUsage(program, reading.text);
  Console::write(reading.text);
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
    if (const auto ended = readOrEnd(program, count, arguments)) return *ended;
    Localization::setLanguageOverride(appLanguage(program.language));
    return runAction(program, interruption);
  } catch (const Interrupted&) {
    return stoppedBy(interruption.signal());
  } catch (const UsageError& error) {
    return refuseUsage(program, error.what());
  }
}

/// From the first request for memory on, so that a refused one is told like any other failure.
ExitStatus runOrTell(int count, const char* const* arguments) {
  try {
    Interruption interruption;
    return run(count, arguments, interruption);
  } catch (const CommandFailure& failure) {
    tell(failure.text(), failure.remark());
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
    return static_cast<int>(runOrTell(count, arguments));
  } catch (const std::exception&) {  // not even a message could be made
    Console::draw("Cannot allocate memory\nCause: Cannot allocate memory\n");
    return static_cast<int>(ExitStatus::failed);
  }
}
