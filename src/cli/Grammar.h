// The command line's grammar: commands with their operands, options and flags, in the words of the help, and the
// reading of a command line by it. Only its source knows the library that does this.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tessaly::cli {

/// An operand or option, just added. A handle: copies mean the same one.
class Argument {
 public:
  explicit Argument(CLI::Option& option) : option_(&option) {}

  /// The command line is wrong without it.
  Argument& require();
  Argument& canBeLeftOut();

  /// Takes no other value than these.
  Argument& oneOf(const std::vector<std::string>& values);

  /// Where this one is given the other can be left out.
  Argument& replaces(const Argument& other);

  /// Neither the help nor a manual page tells of it.
  Argument& hide();

 private:
  CLI::Option* option_;
};

/// What the help says of an operand, an option or a flag.
struct ArgumentDescription {
  std::string name;         ///< "SOURCE", "--output" or "-q,--quiet"
  std::string placeholder;  ///< of an option's value: "FOLDER", or "skip|numberedCopy" where nothing else is taken
  std::string description;
  bool isRequired = false;
  bool takesMany = false;
};

/// What the help says of a command, with the commands below it.
struct CommandDescription {
  std::string name;
  std::string description;
  std::vector<ArgumentDescription> operands;
  std::vector<ArgumentDescription> options;
  std::vector<CommandDescription> commands;
};

/// A command, or the program itself. A handle: copies mean the same one, which lives as long as its grammar.
class Command {
 public:
  explicit Command(CLI::App& app) : app_(&app) {}

  Command addCommand(const std::string& name, const std::string& description);
  void requireCommand();

  // A value is a std::string, an optional of that or of a std::int64_t, or a vector of strings for one word or more.

  /// Adds an argument that must be given, by its position.
  template <typename Value>
  Argument addOperand(const std::string& name, Value& value, const std::string& description);

  /// Adds an option with a value; `placeholder` stands for the value in the help.
  template <typename Value>
  Argument addOption(const std::string& name, Value& value, const std::string& placeholder,
                     const std::string& description);

  void addFlag(const std::string& name, bool& value, const std::string& description);

  /// Calls `function` at the end of the reading when this command was given.
  void whenGiven(std::function<void()> function);

  [[nodiscard]] std::string name() const;
  [[nodiscard]] std::optional<Command> find(const std::string& name) const;

  /// Whether the word is an option of this command whose value is the next word.
  [[nodiscard]] bool takesNext(const std::string& word) const;

  /// The one source of completions and manual pages; nothing hidden is in it.
  [[nodiscard]] CommandDescription describe() const;

  /// What --help prints after `called`.
  [[nodiscard]] std::string help(const std::string& called) const;

 private:
  CLI::App* app_;
};

/// What a command line came to.
struct Reading {
  enum class Kind {
    command,  ///< one was given, and told so
    answer,   ///< help or version were asked for: the text
    mistake,  ///< the text says which
  };
  Kind kind = Kind::command;
  std::string text;
};

class Grammar {
 public:
  Grammar(const std::string& name, const std::string& description, const std::string& version);
  Grammar(const Grammar&) = delete;
  Grammar& operator=(const Grammar&) = delete;
  ~Grammar();

  [[nodiscard]] Command program() const;

  /// Reads the words behind the program's name, once.
  Reading read(std::vector<std::string> words);

  /// The line that shows how the command is called that was read last.
  [[nodiscard]] std::string usage() const;

 private:
  std::unique_ptr<CLI::App> app_;
};

}  // namespace tessaly::cli
