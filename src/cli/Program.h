// The program as its command line chooses it. Each command adds its part of the grammar and, when it is the one that
// was given, leaves its action.
#pragma once

#include "cli/ExitStatus.h"
#include "cli/Grammar.h"

#include <functional>
#include <memory>
#include <string>

namespace tessaly::cli {

class Interruption;

/// What a command may need besides its own options.
struct Context {
  Interruption& interruption;
};

using Action = std::function<ExitStatus(const Context&)>;

struct Program {
  Program();

  Grammar grammar;
  std::string language;  ///< raw value; empty when not given
  Action action;
};

/// Reads what the program was called with.
Reading read(Program& program, int count, const char* const* arguments);

/// Adds a command, with the options that every command takes, below the program or below another command.
Command addCommand(Program& program, Command parent, const std::string& name, const std::string& description);
Command addCommand(Program& program, const std::string& name, const std::string& description);

/// Makes `run(options, context)` the action when `command` is the one that was given.
template <typename Options>
void setAction(Program& program, Command command, std::shared_ptr<Options> options,
               ExitStatus (*run)(const Options&, const Context&)) {
  command.whenGiven([&program, options, run] {
    program.action = [options, run](const Context& context) { return run(*options, context); };
  });
}

}  // namespace tessaly::cli
