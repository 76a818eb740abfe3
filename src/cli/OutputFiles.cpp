#include "cli/OutputFiles.h"

#include "batch/SourceFiles.h"
#include "cli/Console.h"
#include "cli/Failures.h"
#include "platform/AtomicFile.h"
#include "platform/SameEntry.h"
#include "platform/Text.h"
#include "preferences/UserFolders.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string>
#include <system_error>

namespace tessaly::cli::OutputFiles {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const fs::path& output, const char* reason) {
  throw UsageError(displayText(output.native()) + ": " + reason);
}

/// A device or pipe is written into, not replaced: /dev/null may be given twice.
bool isReplaced(const fs::path& output) {
  std::error_code ignored;
  const fs::file_status status = fs::status(output, ignored);
  return !fs::exists(status) || fs::is_regular_file(status);
}

void refuseSame(const fs::path& output, const fs::path& other, const char* reason) {
  if (!output.empty() && !other.empty() && isReplaced(output) && isSameEntry(output, other)) refuse(output, reason);
}

/// What cannot be read may be a photograph.
bool beginsLikeTIFF(const fs::path& file) {
  std::array<char, 4> start{};
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return true;
  if (!stream.read(start.data(), start.size())) return false;
  const std::string_view bytes(start.data(), start.size());
  return bytes == std::string_view("II*\0", 4) || bytes == std::string_view("MM\0*", 4);
}

/// A raw plane, as it is written here, has the extension of some cameras' files too.
bool hasPhotographsName(const fs::path& file) {
  return isSourceFileName(file) && lowerCasedExtension(file) != "raw";
}

bool isPhotograph(const fs::path& file) {
  std::error_code error;
  if (!fs::is_regular_file(file, error)) return false;
  return hasPhotographsName(file) || hasPhotographsName(fs::weakly_canonical(file, error)) || beginsLikeTIFF(file);
}

void refusePhotograph(const fs::path& output) {
  if (isPhotograph(output)) refuse(output, "Output exists");
}

void checkOne(const fs::path& output, const std::vector<fs::path>& inputs) {
  for (const fs::path& input : inputs)
    refuseSame(output, input, "a file that the command itself works with cannot be its output");
  refusePhotograph(output);
}

bool hasStandardOutput(const std::vector<fs::path>& outputs) {
  return std::any_of(outputs.begin(), outputs.end(), isStandardOutput);
}

}  // namespace

void check(const std::vector<fs::path>& outputs, std::vector<fs::path> inputs) {
  inputs.push_back(preferencesFile());
  if (std::count_if(outputs.begin(), outputs.end(), isStandardOutput) > 1)
    throw UsageError("-: only one output can be standard output");
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    if (isStandardOutput(outputs[i])) continue;
    checkOne(outputs[i], inputs);
    for (std::size_t earlier = 0; earlier < i; ++earlier)
      refuseSame(outputs[i], outputs[earlier], "two outputs cannot be the same file");
  }
}

bool isStandardOutput(const fs::path& output) {
  return output == "-";
}

void write(const fs::path& path, std::span<const std::byte> bytes) {
  if (isStandardOutput(path)) return Console::write(bytes);
  refusePhotograph(path);  // it may have come during the work
  try {
    replaceFileAtomically(path, bytes);
  } catch (const std::exception& error) {
    throw CommandFailure(error, subjectName(path));
  }
}

void write(const fs::path& path, std::string_view text) {
  if (isStandardOutput(path)) return Console::write(text);
  write(path, std::as_bytes(std::span(text.data(), text.size())));
}

bool tellsTerminal(const std::vector<fs::path>& outputs) {
  return hasStandardOutput(outputs) ? Console::isTerminal() : Console::outputIsTerminal();
}

void say(std::string_view text, const std::vector<fs::path>& outputs) {
  if (hasStandardOutput(outputs)) return Console::tell(text);
  Console::write(std::string(text) + "\n");
}

}  // namespace tessaly::cli::OutputFiles
