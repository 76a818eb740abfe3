#include "cli/Pages.h"

#include <fmt/format.h>

namespace tessaly::cli::Pages {
namespace {

constexpr const char* manualStart = R"(.SH NAME
tessaly\-cli \- repair fixed sensor defects in DNG files, from the command line
.SH SYNOPSIS
.B tessaly\-cli
.I COMMAND
.RI [ OPTION \|.\|.\|.\&]
.RI [ ARGUMENT \|.\|.\|.\&]
.SH DESCRIPTION
.B tessaly\-cli
learns the fixed defects of one camera body from calibration frames, keeps them as a camera profile, and writes repaired
copies of DNG files with it: the engine of
.BR tessaly (1)
without its window, for scripts and servers.
Original files are only ever read, and nothing is ever overwritten.
.PP
A command prints its result on standard output and everything else on standard error.
A failure is two lines there: what it means to a photographer, then \(lqCause: \(rq and the technical reason in English.
With a terminal on standard error, long work shows how far it is; without one it prints a line a file.
.PP
.I P
and
.I PROFILE
are a profile file's path, a stored profile's id, or its name when only one has it; a path is tried first.
An output named
.B \-
is standard output, once a run; no output ever replaces a photograph.
.SH COMMANDS
)";

constexpr const char* manualEnd = R"(.SH EXIT STATUS
.TP
.B 0
Everything was done.
.TP
.B 1
At least one file failed, or the work could not be done; a missing file or folder is such work.
.TP
.B 2
The command line is wrong; nothing was read or written.
.TP
.B 128 and more
A signal has stopped the program: 128 and its number.
Files in progress finished and the log was written; a second signal gives them up.
.SH ENVIRONMENT
.TP
.B TESSALY_HOME
A folder that replaces the one of profiles and the one of settings.
.TP
.B TERM
With
.B dumb
no progress is drawn.
.SH FILES
.TP
.I ~/.local/share/Tessaly/Profiles/
The camera profiles, one JSON file each.
.TP
.I ~/.config/Tessaly/
The settings that the window changes; what they say holds unless an option says otherwise.
.TP
.I FOLDER/Tessaly Results/
Repaired copies and their log, unless another folder was chosen.
.SH EXAMPLES
.nf
tessaly\-cli calibrate frames \-\-name "My body" \-\-save
tessaly\-cli repair photographs \-\-profile "My body"
tessaly\-cli repair \-\-recursive archive \-\-profile "My body" \-\-output repaired
tessaly\-cli repair photographs \-\-profile "My body" \-\-json | jq .failed
.fi
.SH SEE ALSO
.BR tessaly (1)
)";

/// Text as man prints it: no hyphen becomes a dash, and no line begins a request.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    if (character == '\\' || character == '-') result += '\\';
    result += character == '\\' ? 'e' : character;
  }
  return result.starts_with('.') || result.starts_with('\'') ? "\\&" + result : result;
}

std::string operandText(const ArgumentDescription& operand) {
  const std::string name = "\\fI" + escaped(operand.name) + "\\fR" + (operand.takesMany ? "\\|.\\|.\\|." : "");
  return operand.isRequired ? name : "[" + name + "]";
}

std::string optionText(const ArgumentDescription& option) {
  std::string names = "\\fB" + escaped(option.name) + "\\fR";
  if (const std::size_t comma = names.find(','); comma != std::string::npos) names.replace(comma, 1, "\\fR, \\fB");
  return option.placeholder.empty() ? names : names + " \\fI" + escaped(option.placeholder) + "\\fR";
}

std::string entry(const std::string& head, const std::string& description) {
  return ".TP\n" + head + "\n" + escaped(description) + ".\n";
}

std::string requiredOptions(const CommandDescription& command) {
  std::string text;
  for (const ArgumentDescription& option : command.options) {
    if (option.isRequired) text += " " + optionText(option);
  }
  return text;
}

// Every command has these two; they are told once.
bool isShared(const ArgumentDescription& option) {
  return option.name.find("--help") != std::string::npos || option.name == "--language";
}

std::string arguments(const CommandDescription& command) {
  std::string text;
  for (const ArgumentDescription& operand : command.operands)
    text += entry(operandText(operand), operand.description);
  for (const ArgumentDescription& option : command.options) {
    if (!isShared(option)) text += entry(optionText(option), option.description);
  }
  return text.empty() ? text : ".RS\n" + text + ".RE\n";
}

std::string sections(const CommandDescription& command, const std::string& called) {
  if (!command.commands.empty()) {
    std::string text;
    for (const CommandDescription& below : command.commands)
      text += sections(below, called + " " + below.name);
    return text;
  }
  std::string head = ".SS " + std::string("\"") + escaped(called);
  for (const ArgumentDescription& operand : command.operands)
    head += " " + operandText(operand);
  return head + requiredOptions(command) + "\"\n" + escaped(command.description) + ".\n" + arguments(command);
}

std::string sharedOptions(const CommandDescription& program) {
  std::string text = ".SH OPTIONS\nEvery command takes these.\n";
  for (const ArgumentDescription& option : program.options)
    text += entry(optionText(option), option.description);
  return text;
}

}  // namespace

std::string manual(const CommandDescription& program, std::string_view version) {
  std::string page = fmt::format(".TH TESSALY\\-CLI 1 \"\" \"Tessaly {}\" \"User Commands\"\n", version);
  page += manualStart;
  for (const CommandDescription& command : program.commands)
    page += sections(command, command.name);
  return page + sharedOptions(program) + manualEnd;
}

}  // namespace tessaly::cli::Pages
