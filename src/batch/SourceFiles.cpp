#include "batch/SourceFiles.h"

#include "dng/DNGReader.h"
#include "platform/FolderNames.h"
#include "platform/NaturalOrder.h"
#include "platform/Text.h"

#include <algorithm>
#include <string>
#include <system_error>

namespace tessaly {

namespace {

bool isHidden(const std::filesystem::path& path) {
  return path.filename().native().starts_with('.');
}

// The name comes first: it costs no question to the file system.
bool hasSourceFileName(const std::filesystem::path& path) {
  return !isHidden(path) && isSourceFileName(path);
}

// The entry itself is asked for: a symbolic link is no regular file, wherever it leads. One that has gone is none.
void examine(const std::filesystem::path& path, SourceListing& listing) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::symlink_status(path, error);
  if (std::filesystem::is_regular_file(status)) {
    listing.files.push_back(path);
  } else if (status.type() == std::filesystem::file_type::none) {
    listing.unexamined.push_back({path, error});
  }
}

}  // namespace

bool isSourceFileName(const std::filesystem::path& name) {
  const std::string extension = lowerCasedExtension(name);
  return extension == "dng" || DNGReader::isProprietaryExtension(extension);
}

SourceListing listSourceFiles(const std::filesystem::path& folder) {
  SourceListing listing;
  for (const std::string& name : namesInFolder(folder)) {
    if (hasSourceFileName(name)) examine(folder / name, listing);
  }
  sortByFileName(listing.files);
  std::ranges::sort(listing.unexamined, {}, &UnexaminedEntry::path);
  return listing;
}

std::vector<std::filesystem::path> sourceFiles(const std::filesystem::path& folder) {
  return listSourceFiles(folder).files;
}

}  // namespace tessaly
