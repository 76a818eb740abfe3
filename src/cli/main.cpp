// tessaly-cli: the engine without a window, for scripts, servers and tests.
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Failures.h"
#include "cli/Interruption.h"
#include "localization/Localization.h"
#include "platform/PartialFile.h"
#include "preferences/AppLanguage.h"

#include <cstdlib>
#include <exception>
#include <new>
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

constexpr std::string_view noMemory = "Cannot allocate memory\nCause: Cannot allocate memory\n";

bool isForWantOfMemory() {
  const std::exception_ptr failure = std::current_exception();
  try {
    if (failure) std::rethrow_exception(failure);
    return true;
  } catch (const std::bad_alloc&) {
    return true;
  } catch (...) {
    return false;
  }
}

/// Where memory is refused to what cannot say so (destructors, functions of libraries that never throw), the program
/// still ends with a message and leaves no temporary file.
[[noreturn]] void giveUp() {
  if (!isForWantOfMemory()) std::abort();
  Console::draw(noMemory);
  PartialFile::removeAllAndExit(static_cast<int>(ExitStatus::failed));
}

}  // namespace
}  // namespace tessaly::cli

int main(int count, char** arguments) {
  using namespace tessaly::cli;
  std::set_terminate(giveUp);
  Console::prepare();
  try {
    return static_cast<int>(runOrTell(count, arguments));
  } catch (const std::exception&) {  // not even a message could be made
    Console::draw(noMemory);
    return static_cast<int>(ExitStatus::failed);
  }
}
