#include "cli/Grammar.h"

#include "platform/Text.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <utility>

namespace tessaly::cli {
namespace {

/// CLI11 misses what is required before it looks at what is too much; a misspelled word is why something is missing.
std::string reasonFor(const CLI::App& app, const CLI::ParseError& error) {
  const CLI::App* command = &app;
  while (!command->get_subcommands().empty())
    command = command->get_subcommands().front();
  for (const std::string& word : app.remaining(true)) {
    if (word.starts_with("-")) return "Unknown option: " + displayText(word);
    if (command->get_require_subcommand_min() > 0) return "Unknown command: " + displayText(word);
  }
  return error.what();
}

bool isShown(const CLI::Option& option) {
  return !option.get_group().empty();
}

ArgumentDescription describe(const CLI::Option& option) {
  const std::string name = option.get_positional() ? option.get_name(true) : option.get_name(false, true);
  const std::string placeholder = option.get_expected_max() > 0 ? option.get_type_name() : "";
  return {name, placeholder, option.get_description(), option.get_required(), option.get_expected_max() > 1};
}

CommandDescription describe(const CLI::App& app) {
  CommandDescription command{app.get_name(), app.get_description(), {}, {}, {}};
  for (const CLI::Option* option : app.get_options()) {
    if (isShown(*option)) (option->get_positional() ? command.operands : command.options).push_back(describe(*option));
  }
  for (const CLI::App* below : app.get_subcommands([](const CLI::App*) { return true; }))
    command.commands.push_back(describe(*below));
  return command;
}

}  // namespace

Argument& Argument::require() {
  option_->required();
  return *this;
}

Argument& Argument::canBeLeftOut() {
  option_->required(false);
  return *this;
}

Argument& Argument::oneOf(const std::vector<std::string>& values) {
  option_->check(CLI::IsMember(values).description(""));
  return *this;
}

Argument& Argument::replaces(const Argument& other) {
  option_->each([replaced = other.option_](const std::string&) { replaced->required(false); });
  return *this;
}

Argument& Argument::hide() {
  option_->group("");
  return *this;
}

Command Command::addCommand(const std::string& name, const std::string& description) {
  return Command(*app_->add_subcommand(name, description));
}

void Command::requireCommand() {
  app_->require_subcommand(1);
}

template <typename Value>
Argument Command::addOperand(const std::string& name, Value& value, const std::string& description) {
  return Argument(*app_->add_option(name, value, description)->required()->type_name(""));
}

template <typename Value>
Argument Command::addOption(const std::string& name, Value& value, const std::string& placeholder,
                            const std::string& description) {
  return Argument(*app_->add_option(name, value, description)->type_name(placeholder));
}

template Argument Command::addOperand(const std::string&, std::string&, const std::string&);
template Argument Command::addOperand(const std::string&, std::vector<std::string>&, const std::string&);
template Argument Command::addOption(const std::string&, std::string&, const std::string&, const std::string&);
template Argument Command::addOption(const std::string&, std::optional<std::string>&, const std::string&,
                                     const std::string&);
template Argument Command::addOption(const std::string&, std::optional<std::int64_t>&, const std::string&,
                                     const std::string&);
template Argument Command::addOption(const std::string&, std::vector<std::string>&, const std::string&,
                                     const std::string&);

void Command::addFlag(const std::string& name, bool& value, const std::string& description) {
  app_->add_flag(name, value, description);
}

void Command::whenGiven(std::function<void()> function) {
  app_->callback(std::move(function));
}

std::string Command::name() const {
  return app_->get_name();
}

std::optional<Command> Command::find(const std::string& name) const {
  const auto found = app_->get_subcommands([&name](CLI::App* command) { return command->get_name() == name; });
  return found.empty() ? std::nullopt : std::optional(Command(*found.front()));
}

bool Command::takesNext(const std::string& word) const {
  const CLI::Option* option = word.starts_with("-") ? app_->get_option_no_throw(word) : nullptr;
  return option && option->get_expected_max() > 0;
}

CommandDescription Command::describe() const {
  return cli::describe(*app_);
}

std::string Command::help(const std::string& called) const {
  return app_->get_formatter()->make_help(app_, called, CLI::AppFormatMode::Normal);
}

Grammar::Grammar(const std::string& name, const std::string& description, const std::string& version)
    : app_(std::make_unique<CLI::App>(description, name)) {
  app_->require_subcommand(1);
  app_->set_version_flag("-V,--version", name + " " + version);
}

Grammar::~Grammar() = default;

Command Grammar::program() const {
  return Command(*app_);
}

Reading Grammar::read(std::vector<std::string> words) {
  std::ranges::reverse(words);  // the order in which CLI11 takes them
  try {
    app_->parse(std::move(words));
    return {};
  } catch (const CLI::CallForHelp&) {
    return {Reading::Kind::answer, app_->help()};
  } catch (const CLI::CallForVersion& version) {
    return {Reading::Kind::answer, std::string(version.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    return {Reading::Kind::mistake, reasonFor(*app_, error)};
  }
}

std::string Grammar::usage() const {
  std::istringstream help(app_->help());
  for (std::string line; std::getline(help, line);) {
    if (line.starts_with("Usage:")) return line;
  }
  return "";
}

}  // namespace tessaly::cli
