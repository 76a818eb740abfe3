#include "store/LegacyProfiles.h"

#include "platform/FolderNames.h"
#include "platform/InputFile.h"
#include "platform/PartialFile.h"

#include <cstddef>
#include <system_error>
#include <vector>

namespace tessaly {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t bufferBytes = 1 << 16;

bool isThere(const fs::path& path) {
  return fs::exists(fs::symlink_status(path));
}

// Grows under a temporary name, so that a copy that is interrupted is not taken for the profile at the next start.
void copyUnlessPresent(const fs::path& source, const fs::path& destination) {
  if (isThere(destination) || isThere(asideOf(destination))) return;
  const InputFile input(source);
  if (!input.isRegular()) return;
  PartialFile copy(FileSystem::system(), destination.parent_path());
  std::vector<std::byte> buffer(bufferBytes);
  if (copy.copyFrom(input, {0, 0, input.size()}, buffer) != input.size()) return;  // it is being rewritten: next time
  copy.synchronize();
  try {
    copy.moveTo(destination);
  } catch (const std::system_error& error) {
    if (error.code() != std::errc::file_exists) throw;  // another process was faster with the same copy
  }
}

}  // namespace

void copyLegacyProfiles(const fs::path& legacy, const fs::path& current) {
  if (!fs::is_directory(legacy)) return;
  fs::create_directories(current);
  for (const std::string& name : namesInFolder(legacy)) {
    if (isProfileFileName(name)) copyUnlessPresent(legacy / name, current / name);
  }
}

fs::path asideOf(const fs::path& file) {
  return file.native() + ".unreadable";
}

bool isProfileFileName(const fs::path& name) {
  return name.extension() == ".json" && !name.native().starts_with('.');
}

}  // namespace tessaly
