// What the shells offer: commands, options, the fixed values of an option, folders, files and stored profiles.
#include "cli/Pages.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

namespace tessaly::cli::Pages {
namespace {

/// What can be offered for a value.
enum class Offer { nothing, choice, folder, file, profile };

Offer offerFor(std::string_view placeholder) {
  if (placeholder.find('|') != std::string_view::npos) return Offer::choice;
  if (placeholder == "FOLDER") return Offer::folder;
  if (placeholder == "PROFILE" || placeholder == "P") return Offer::profile;
  for (const std::string_view word : {"NAME", "N", "K/N", "PERCENT", "COMMAND"})
    if (placeholder == word) return Offer::nothing;
  return Offer::file;
}

std::string spaced(std::string choices) {
  std::ranges::replace(choices, '|', ' ');
  return choices;
}

std::vector<std::string> namesOf(const ArgumentDescription& option) {
  const std::size_t comma = option.name.find(',');
  if (comma == std::string::npos) return {option.name};
  return {option.name.substr(0, comma), option.name.substr(comma + 1)};
}

/// In single quotes, for all three shells.
std::string inQuotes(std::string_view text) {
  std::string result = "'";
  for (const char character : text)
    result += character == '\'' ? "'\\''" : std::string(1, character);
  return result + "'";
}

/// Calls visit(command, path) for the program and every command below; the path of "profiles list" is "profiles/list",
/// that of the program is empty.
template <typename Visit>
void visitAll(const CommandDescription& command, const std::string& path, const Visit& visit) {
  visit(command, path);
  for (const CommandDescription& below : command.commands)
    visitAll(below, path.empty() ? below.name : path + "/" + below.name, visit);
}

// ---- bash

constexpr const char* bashStart = R"sh(# bash completion for tessaly-cli, made of the program's own grammar

_tessaly_cli_profiles() {
  local name typed=${current//\\/}
  typed=${typed#[\"\']}
  while IFS= read -r name; do
    [[ $name != "$typed"* ]] || COMPREPLY+=("$(sed 's/[][ "$&();<>*?#|!{}`\\~'\'']/\\&/g' <<<"$name")")
  done < <(tessaly-cli profiles list 2>/dev/null | cut -f 2)
}

# _tessaly_cli_offer KIND [CHOICES]
_tessaly_cli_offer() {
  case $1 in
    choice) mapfile -t COMPREPLY < <(compgen -W "$2" -- "$current") ;;
    folder) mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
    file | profile) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
  esac
  case $1 in
    folder | file) compopt -o filenames 2>/dev/null ;;
    profile) _tessaly_cli_profiles ;;
  esac
}

_tessaly_cli() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command='' word
  COMPREPLY=()
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case "$command/$word" in
)sh";

constexpr const char* bashEnd = R"sh(  esac
}

complete -F _tessaly_cli tessaly-cli
)sh";

const char* bashKind(Offer offer) {
  switch (offer) {
    case Offer::choice:
      return "choice";
    case Offer::folder:
      return "folder";
    case Offer::profile:
      return "profile";
    case Offer::file:
      return "file";
    case Offer::nothing:
      break;
  }
  return "nothing";
}

std::string bashOffer(std::string_view placeholder) {
  const Offer offer = offerFor(placeholder);
  const std::string choices = offer == Offer::choice ? " " + inQuotes(spaced(std::string(placeholder))) : "";
  return fmt::format("_tessaly_cli_offer {}{}", bashKind(offer), choices);
}

std::string bashValues(const CommandDescription& command, const std::string& path) {
  std::string lines;
  for (const ArgumentDescription& option : command.options) {
    if (option.placeholder.empty()) continue;
    for (const std::string& name : namesOf(option)) {
      const std::string words = fmt::format("{} {}", path, name);
      lines += fmt::format("    {}) {}; return ;;\n", inQuotes(words), bashOffer(option.placeholder));
    }
  }
  return lines;
}

std::string bashWords(const CommandDescription& command, const std::string& path) {
  std::string options;
  for (const ArgumentDescription& option : command.options) {
    for (const std::string& name : namesOf(option))
      options += (options.empty() ? "" : " ") + name;
  }
  std::string commands;
  for (const CommandDescription& below : command.commands)
    commands += (commands.empty() ? "" : " ") + below.name;
  const std::string other = !command.commands.empty()
                                ? "_tessaly_cli_offer choice " + inQuotes(commands)
                                : bashOffer(command.operands.empty() ? "N" : command.operands.front().name);
  return fmt::format(
      "    {})\n      if [[ $current == -* ]]; then _tessaly_cli_offer choice {}; else {}; fi\n      ;;\n",
      inQuotes(path), inQuotes(options), other);
}

// ---- zsh

constexpr const char* zshStart = R"sh(#compdef tessaly-cli
# zsh completion for tessaly-cli, made of the program's own grammar

_tessaly-cli-profiles() {
  local -a names
  names=(${(f)"$(tessaly-cli profiles list 2>/dev/null | cut -f 2)"})
  compadd -a names
  _files
}

)sh";

/// In the argument of _arguments brackets and colons are signs.
std::string zshText(std::string_view text) {
  std::string result;
  for (const char character : text) {
    if (character == '[' || character == ']' || character == ':') result += '\\';
    result += character;
  }
  return result;
}

std::string zshAction(std::string_view placeholder) {
  switch (offerFor(placeholder)) {
    case Offer::choice:
      return "(" + spaced(std::string(placeholder)) + ")";
    case Offer::folder:
      return "_files -/";
    case Offer::profile:
      return "_tessaly-cli-profiles";
    case Offer::file:
      return "_files";
    case Offer::nothing:
      break;
  }
  return " ";
}

std::string zshOption(const ArgumentDescription& option, const std::string& name) {
  const std::string value =
      option.placeholder.empty() ? "" : ":" + zshText(option.placeholder) + ":" + zshAction(option.placeholder);
  return " \\\n    " + inQuotes(name + "[" + zshText(option.description) + "]" + value);
}

std::string zshFunctionName(const std::string& path) {
  std::string name = "_tessaly-cli" + (path.empty() ? "" : "-" + path);
  std::ranges::replace(name, '/', '-');
  return name;
}

std::string zshArguments(const CommandDescription& command) {
  std::string text;
  for (const ArgumentDescription& option : command.options) {
    for (const std::string& name : namesOf(option))
      text += zshOption(option, name);
  }
  for (const ArgumentDescription& operand : command.operands) {
    text += " \\\n    " +
            inQuotes((operand.takesMany ? "*:" : ":") + zshText(operand.name) + ":" + zshAction(operand.name));
  }
  return text;
}

std::string zshFunction(const CommandDescription& command, const std::string& path) {
  std::string text = zshFunctionName(path) + "() {\n";
  if (command.commands.empty()) return text + "  _arguments" + zshArguments(command) + "\n}\n\n";
  text += "  local state line\n  local -a commands\n  commands=(\n";
  for (const CommandDescription& below : command.commands)
    text += "    " + inQuotes(below.name + ":" + below.description) + "\n";
  text += "  )\n  _arguments -C" + zshArguments(command) + " \\\n    '1:command:->command' '*::argument:->argument'\n";
  text += "  case $state in\n    command) _describe command commands ;;\n    argument)\n      case $line[1] in\n";
  for (const CommandDescription& below : command.commands) {
    text += fmt::format("        {}) {} ;;\n", below.name,
                        zshFunctionName(path.empty() ? below.name : path + "/" + below.name));
  }
  return text + "      esac\n      ;;\n  esac\n}\n\n";
}

// ---- fish

constexpr const char* fishStart = R"(# fish completion for tessaly-cli, made of the program's own grammar

function __tessaly_cli_profiles
    tessaly-cli profiles list 2>/dev/null | cut -f 2
end

complete -c tessaly-cli -f
)";

/// That the command line is about this command: its words were seen, and none of those below it.
std::string fishCondition(const CommandDescription& command, const std::string& path) {
  std::string below;
  for (const CommandDescription& each : command.commands)
    below += " " + each.name;
  if (path.empty()) return "__fish_use_subcommand";
  std::string condition;
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t stop = std::min(path.find('/', start), path.size());
    condition += (condition.empty() ? "" : "; and ");
    condition += "__fish_seen_subcommand_from " + path.substr(start, stop - start);
    start = stop + 1;
  }
  return below.empty() ? condition : condition + "; and not __fish_seen_subcommand_from" + below;
}

std::string fishValue(std::string_view placeholder) {
  switch (offerFor(placeholder)) {
    case Offer::choice:
      return " -x -a " + inQuotes(spaced(std::string(placeholder)));
    case Offer::folder:
      return " -x -a '(__fish_complete_directories)'";
    case Offer::profile:
      return " -r -F -a '(__tessaly_cli_profiles)'";
    case Offer::file:
      return " -r -F";
    case Offer::nothing:
      break;
  }
  return " -x";
}

std::string fishOption(const ArgumentDescription& option) {
  std::string text;
  for (const std::string& name : namesOf(option))
    text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  if (!option.placeholder.empty()) text += fishValue(option.placeholder);
  return text + " -d " + inQuotes(option.description);
}

std::string fishOperand(const ArgumentDescription& operand) {
  switch (offerFor(operand.name)) {
    case Offer::profile:
      return " -F -a '(__tessaly_cli_profiles)'";
    case Offer::file:
      return " -F";
    default:
      return "";
  }
}

std::string fishLines(const CommandDescription& command, const std::string& path) {
  const std::string start = "complete -c tessaly-cli -n " + inQuotes(fishCondition(command, path));
  std::string lines;
  for (const CommandDescription& below : command.commands)
    lines += start + " -a " + below.name + " -d " + inQuotes(below.description) + "\n";
  for (const ArgumentDescription& option : command.options)
    lines += start + fishOption(option) + "\n";
  const std::string operand = command.operands.empty() ? "" : fishOperand(command.operands.front());
  return operand.empty() ? lines : lines + start + operand + "\n";
}

}  // namespace

std::string bash(const CommandDescription& program) {
  std::string paths;
  std::string values;
  std::string words;
  visitAll(program, "", [&](const CommandDescription& command, const std::string& path) {
    const std::string before = path.find('/') == std::string::npos ? "/" + path : path;
    if (!path.empty()) paths += fmt::format("      {}) command={} ;;\n", inQuotes(before), inQuotes(path));
    values += bashValues(command, path);
    words += bashWords(command, path);
  });
  return bashStart + paths + "    esac\n  done\n  case \"$command $previous\" in\n" + values +
         "  esac\n  case $command in\n" + words + bashEnd;
}

std::string zsh(const CommandDescription& program) {
  std::string text = zshStart;
  visitAll(program, "",
           [&](const CommandDescription& command, const std::string& path) { text += zshFunction(command, path); });
  return text + "_tessaly-cli \"$@\"\n";
}

std::string fish(const CommandDescription& program) {
  std::string text = fishStart;
  visitAll(program, "",
           [&](const CommandDescription& command, const std::string& path) { text += fishLines(command, path); });
  return text;
}

}  // namespace tessaly::cli::Pages
