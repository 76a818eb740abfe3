#include "platform/AtomicFile.h"

#include "platform/PartialFile.h"
#include "platform/SystemCall.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

namespace tessaly {
namespace {

// What stands at a path, links followed; nothing when there is nothing.
std::optional<struct stat> statusOf(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) return status;
  if (errno != ENOENT) throwSystemError(errno);
  return std::nullopt;
}

// The file itself behind any links, so that the link survives the rename over it; the last one may dangle.
std::filesystem::path withoutLinks(const std::filesystem::path& path) {
  if (!std::filesystem::is_symlink(std::filesystem::symlink_status(path))) return path;
  return std::filesystem::weakly_canonical(path.parent_path() / std::filesystem::read_symlink(path));
}

void writeInto(const std::filesystem::path& path, std::span<const std::byte> bytes) {
  const int descriptor = callSystem([&] { return ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY); });
  int error = 0;
  while (!bytes.empty() && error == 0) {
    const ssize_t written = retryWhenInterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
    if (written <= 0) error = written == 0 ? EIO : errno;
    if (written > 0) bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  ::close(descriptor);
  if (error != 0) throwSystemError(error);
}

}  // namespace

void replaceFileAtomically(const std::filesystem::path& path, std::span<const std::byte> bytes, FileSystem& system) {
  const std::optional<struct stat> old = statusOf(path);
  if (old && S_ISDIR(old->st_mode)) throwSystemError(EISDIR);
  if (old && !S_ISREG(old->st_mode)) return writeInto(path, bytes);
  const std::filesystem::path file = withoutLinks(path);
  PartialFile partial(system, folderOf(file), old ? Access::ownerOnly : Access::asTheUmaskSays);
  partial.writeAt(0, bytes);
  if (old) partial.setMode(old->st_mode & 07777);
  partial.synchronize();
  partial.replace(file);
}

void replaceFileAtomically(const std::filesystem::path& path, std::string_view text, FileSystem& system) {
  replaceFileAtomically(path, std::as_bytes(std::span(text.data(), text.size())), system);
}

}  // namespace tessaly
