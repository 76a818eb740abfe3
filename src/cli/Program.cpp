#include "cli/Program.h"

#include "preferences/AppLanguage.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace tessaly::cli {
namespace {

void addLanguage(CLI::App& command, std::string& language) {
  addOption(&command, "--language", language, languageTagChoice(),
            "Language of messages; otherwise the saved preference")
      ->check(CLI::IsMember(languageTags()).description(""));
}

bool isBracketed(const std::string& argument) {
  return argument.size() >= 2 && argument.front() == '[' && argument.back() == ']';
}

bool takesNext(const std::string& argument) {
  return argument.starts_with("--") && argument != "--" && argument != "--save" &&
         argument.find('=') == std::string::npos;
}

/// CLI11 takes "[a,b]" among the values of a list for a list itself; "./[a,b]" is the same folder. Only the frames of
/// the calibration are a list.
void protectBrackets(std::vector<std::string>& arguments) {
  auto argument = std::ranges::find(arguments, "calibrate");
  for (; argument != arguments.end(); ++argument) {
    if (isBracketed(*argument) && !takesNext(*std::prev(argument))) argument->insert(0, "./");
  }
}

}  // namespace

Program::Program()
    : app("Repairs fixed sensor defects in DNG files. Original files are only ever read.", "tessaly-cli") {
  app.require_subcommand(1);
  app.set_version_flag("-V,--version", "tessaly-cli " TESSALY_VERSION);
  addLanguage(app, language);
}

void parse(Program& program, int count, const char* const* arguments) {
  std::vector<std::string> list(arguments + std::min(count, 1), arguments + count);
  protectBrackets(list);
  std::ranges::reverse(list);  // the order in which CLI11 takes them
  program.app.parse(std::move(list));
}

CLI::App* addCommand(Program& program, CLI::App& parent, const std::string& name, const std::string& description) {
  CLI::App* command = parent.add_subcommand(name, description);
  addLanguage(*command, program.language);
  return command;
}

CLI::Option* addOperand(CLI::App* command, const std::string& name, std::string& value,
                        const std::string& description) {
  return command->add_option(name, value, description)->required()->type_name("");
}

CLI::Option* addOption(CLI::App* command, const std::string& name, std::string& value, const std::string& placeholder,
                       const std::string& description) {
  return command->add_option(name, value, description)->type_name(placeholder);
}

}  // namespace tessaly::cli
