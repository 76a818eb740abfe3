#include "platform/FolderNames.h"

#include <dirent.h>

#include <cerrno>
#include <memory>
#include <string_view>
#include <system_error>

namespace tessaly {
namespace {

struct FolderCloser {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

[[noreturn]] void throwListingError(const std::filesystem::path& folder) {
  const std::error_code error(errno, std::generic_category());
  throw std::filesystem::filesystem_error("cannot list the folder", folder, error);
}

}  // namespace

std::vector<std::string> namesInFolder(const std::filesystem::path& folder) {
  DIR* opened = nullptr;
  do {
    opened = ::opendir(folder.c_str());
  } while (opened == nullptr && errno == EINTR);
  const std::unique_ptr<DIR, FolderCloser> listing(opened);
  if (!listing) throwListingError(folder);
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* entry = ::readdir(listing.get())) {
    const std::string_view name = static_cast<const char*>(entry->d_name);
    if (name != "." && name != "..") names.emplace_back(name);
    errno = 0;
  }
  if (errno != 0) throwListingError(folder);
  return names;
}

}  // namespace tessaly
