// The command line's grammar and what was chosen with it. Each command adds its part and, when it is the one that was
// given, leaves its action.
#pragma once

#include "cli/ExitStatus.h"

#include <CLI/CLI.hpp>

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

  CLI::App app;
  std::string language;  ///< raw value; empty when not given
  Action action;
};

/// Parses what the program was called with; throws what CLI11 throws.
void parse(Program& program, int count, const char* const* arguments);

/// Adds a command, with the options that every command takes, below the program or below another command.
CLI::App* addCommand(Program& program, CLI::App& parent, const std::string& name, const std::string& description);

/// Makes `run(options, context)` the action when `command` is the one that was given.
template <typename Options>
void setAction(Program& program, CLI::App* command, std::shared_ptr<Options> options,
               ExitStatus (*run)(const Options&, const Context&)) {
  command->callback([&program, options, run] {
    program.action = [options, run](const Context& context) { return run(*options, context); };
  });
}

/// Adds an argument that must be given, by its position.
CLI::Option* addOperand(CLI::App* command, const std::string& name, std::string& value, const std::string& description);

/// Adds an option with a value; `placeholder` stands for the value in the help.
CLI::Option* addOption(CLI::App* command, const std::string& name, std::string& value, const std::string& placeholder,
                       const std::string& description);

}  // namespace tessaly::cli
