#include "batch/OutputFolder.h"

#include "platform/Paths.h"
#include "platform/SameEntry.h"

#include <system_error>

namespace tessaly {

namespace {

std::filesystem::path absolutePath(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::path absolute = std::filesystem::absolute(folder, error);
  return error ? folder : absolute;
}

std::filesystem::path lexicallyStandardized(const std::filesystem::path& folder) {
  return standardizedSpelling(absolutePath(folder));
}

bool isSameOnDisk(const std::filesystem::path& left, const std::filesystem::path& right) {
  std::error_code error;
  return std::filesystem::equivalent(left, right, error) && !error;
}

}  // namespace

std::filesystem::path defaultOutputFolder(const std::filesystem::path& inputFolder) {
  return inputFolder / "Tessaly Results";
}

std::filesystem::path standardized(const std::filesystem::path& folder) {
  std::filesystem::path absolute = absolutePath(folder);
  std::filesystem::path normal = lexicallyStandardized(folder);
  std::error_code error;
  const bool leadsElsewhere = std::filesystem::exists(absolute, error) && !isSameOnDisk(absolute, normal);
  return leadsElsewhere ? absolute : normal;
}

bool isSameFolder(const std::filesystem::path& left, const std::filesystem::path& right) {
  return lexicallyStandardized(left) == lexicallyStandardized(right) || isSameEntry(left, right);
}

}  // namespace tessaly
