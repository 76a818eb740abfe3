#include "cli/OutputFiles.h"

#include "batch/OutputFolder.h"
#include "cli/Failures.h"
#include "platform/AtomicFile.h"
#include "platform/Text.h"
#include "preferences/UserFolders.h"

#include <system_error>

namespace tessaly::cli::OutputFiles {
namespace {

namespace fs = std::filesystem;

/// A device or pipe is written into, not replaced: /dev/null may be given twice.
bool isReplaced(const fs::path& output) {
  std::error_code ignored;
  const fs::file_status status = fs::status(output, ignored);
  return !fs::exists(status) || fs::is_regular_file(status);
}

void refuseSame(const fs::path& output, const fs::path& other, const char* reason) {
  if (!output.empty() && !other.empty() && isSameFolder(output, other) && isReplaced(output))
    throw UsageError(displayText(output.native()) + ": " + reason);
}

}  // namespace

void check(const std::vector<fs::path>& outputs, std::vector<fs::path> inputs) {
  inputs.push_back(preferencesFile());
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    for (const fs::path& input : inputs)
      refuseSame(outputs[i], input, "a file that the command itself works with cannot be its output");
    for (std::size_t earlier = 0; earlier < i; ++earlier)
      refuseSame(outputs[i], outputs[earlier], "two outputs cannot be the same file");
  }
}

void write(const fs::path& path, std::span<const std::byte> bytes) {
  try {
    replaceFileAtomically(path, bytes);
  } catch (const std::exception& error) {
    throw CommandFailure(error, displayName(path));
  }
}

void write(const fs::path& path, std::string_view text) {
  write(path, std::as_bytes(std::span(text.data(), text.size())));
}

}  // namespace tessaly::cli::OutputFiles
