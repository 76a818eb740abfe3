#include "cli/Program.h"

#include "preferences/AppLanguage.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace tessaly::cli {
namespace {

void addLanguage(Command command, std::string& language) {
  command.addOption("--language", language, languageTagChoice(), "Language of messages; otherwise the saved preference")
      .oneOf(languageTags());
}

bool isBracketed(const std::string& word) {
  return word.size() >= 2 && word.front() == '[' && word.back() == ']';
}

/// CLI11 takes "[a,b]" among the values of a list for a list itself; "./[a,b]" is the same folder. Frames of the
/// calibration and what is repaired are lists.
void protectBrackets(const Command& program, std::vector<std::string>& words) {
  auto word = std::ranges::find_if(words, [](const auto& each) { return each == "calibrate" || each == "repair"; });
  const auto command = word == words.end() ? std::nullopt : program.find(*word);
  for (; command && word != words.end(); ++word) {
    if (isBracketed(*word) && !command->takesNext(*std::prev(word))) word->insert(0, "./");
  }
}

}  // namespace

Program::Program()
    : grammar("tessaly-cli", "Repairs fixed sensor defects in DNG files. Original files are only ever read.",
              TESSALY_VERSION) {
  addLanguage(grammar.program(), language);
}

Reading read(Program& program, int count, const char* const* arguments) {
  std::vector<std::string> words(arguments + std::min(count, 1), arguments + count);
  protectBrackets(program.grammar.program(), words);
  return program.grammar.read(std::move(words));
}

Command addCommand(Program& program, Command parent, const std::string& name, const std::string& description) {
  Command command = parent.addCommand(name, description);
  addLanguage(command, program.language);
  return command;
}

Command addCommand(Program& program, const std::string& name, const std::string& description) {
  return addCommand(program, program.grammar.program(), name, description);
}

}  // namespace tessaly::cli
