#include "batch/SourceFiles.h"

#include "dng/DNGReader.h"
#include "platform/NaturalOrder.h"
#include "platform/Text.h"

#include <string>
#include <system_error>

namespace tessaly {

namespace {

bool isHidden(const std::filesystem::path& path) {
  return path.filename().native().starts_with('.');
}

// Of the entry itself: a symbolic link is no regular file, wherever it leads. An entry that cannot be examined is none.
bool isRegularFile(const std::filesystem::directory_entry& entry) {
  std::error_code error;
  return std::filesystem::is_regular_file(entry.symlink_status(error));
}

bool isSourceFile(const std::filesystem::directory_entry& entry) {
  // The name first: it costs no question to the file system.
  return !isHidden(entry.path()) && isSourceFileName(entry.path()) && isRegularFile(entry);
}

}  // namespace

bool isSourceFileName(const std::filesystem::path& name) {
  const std::string extension = lowerCasedExtension(name);
  return extension == "dng" || DNGReader::isProprietaryExtension(extension);
}

std::vector<std::filesystem::path> sourceFiles(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(folder)) {
    if (isSourceFile(entry)) files.push_back(entry.path());
  }
  sortByFileName(files);
  return files;
}

}  // namespace tessaly
