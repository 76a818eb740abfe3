#include "batch/CopyCompanions.h"

#include "platform/FileSystem.h"
#include "platform/InputFile.h"
#include "platform/PartialFile.h"
#include "platform/Text.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

namespace tessaly {

namespace {

constexpr std::size_t companionBuffer = std::size_t{1} << 16;
constexpr mode_t permissionBits = 0777;

/// The name of a sidecar for the photograph: with its extension replaced, or with one more behind it.
struct SidecarName {
  bool replacesExtension;
  const char* extension;

  [[nodiscard]] std::filesystem::path of(const std::filesystem::path& photograph) const {
    std::filesystem::path sidecar = photograph;
    if (replacesExtension) return sidecar.replace_extension(extension);
    return sidecar += extension;
  }
};

constexpr SidecarName sidecarNames[] = {{true, ".xmp"}, {false, ".xmp"}, {false, ".pp3"}};

[[noreturn]] void failWith(int number) {
  throw std::system_error(number, std::generic_category());
}

void copyWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
  const InputFile source(from);
  PartialFile copy(FileSystem::system(), folderOf(to));
  std::vector<std::byte> buffer(companionBuffer);
  if (copy.copyFrom(source, {0, 0, source.size()}, buffer) != source.size()) failWith(EIO);
  copy.setMode(source.permissions() & permissionBits);
  copy.synchronize();
  copy.moveTo(to);
}

void copyDate(const std::filesystem::path& from, const std::filesystem::path& to) {
  struct stat status {};
  if (::stat(from.c_str(), &status) != 0) failWith(errno);
  const timespec times[] = {{0, UTIME_OMIT}, status.st_mtim};
  if (::utimensat(AT_FDCWD, to.c_str(), times, 0) != 0) failWith(errno);
}

}  // namespace

std::vector<BatchOmission> addCompanions(const std::filesystem::path& source, const std::filesystem::path& copy,
                                         const BatchOptions& options) {
  std::vector<BatchOmission> lacking;
  const auto attempt = [&lacking](const std::filesystem::path& file, const auto& work) {
    try {
      work();
    } catch (const std::exception& error) {
      lacking.push_back({displayName(file), exceptionMessage(error)});
    }
  };
  if (options.keepDates) attempt(copy, [&] { copyDate(source, copy); });
  if (!options.copySidecars) return lacking;
  for (const SidecarName& name : sidecarNames) {
    const std::filesystem::path sidecar = name.of(source);
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(sidecar, ignored)) continue;
    attempt(sidecar, [&] { copyWithoutReplacing(sidecar, name.of(copy)); });
  }
  return lacking;
}

}  // namespace tessaly
