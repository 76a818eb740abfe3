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

using Status = struct stat;

// What stands at a path, by stat or, links not followed, by lstat; nothing when there is nothing.
std::optional<Status> statusOf(const std::filesystem::path& path, int (*ask)(const char*, Status*)) {
  Status status{};
  if (ask(path.c_str(), &status) == 0) return status;
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

// `old`: what bears the name now.
void replace(const std::filesystem::path& path, const std::optional<Status>& old, std::span<const std::byte> bytes,
             FileSystem& system) {
  const bool isFile = old && S_ISREG(old->st_mode);
  PartialFile partial(system, folderOf(path), isFile ? Access::ownerOnly : Access::asTheUmaskSays);
  partial.writeAt(0, bytes);
  if (isFile) partial.setMode(old->st_mode & 07777);
  partial.synchronize();
  partial.replace(path);
}

std::span<const std::byte> bytesIn(std::string_view text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

}  // namespace

void replaceFileAtomically(const std::filesystem::path& path, std::span<const std::byte> bytes, FileSystem& system) {
  const std::optional<Status> old = statusOf(path, ::stat);
  if (old && S_ISDIR(old->st_mode)) throwSystemError(EISDIR);
  if (old && !S_ISREG(old->st_mode)) return writeInto(path, bytes);
  replace(withoutLinks(path), old, bytes, system);
}

void replaceFileAtomically(const std::filesystem::path& path, std::string_view text, FileSystem& system) {
  replaceFileAtomically(path, bytesIn(text), system);
}

void replaceEntryAtomically(const std::filesystem::path& path, std::string_view text, FileSystem& system) {
  const std::optional<Status> old = statusOf(path, ::lstat);
  if (old && S_ISDIR(old->st_mode)) throwSystemError(EISDIR);
  replace(path, old, bytesIn(text), system);
}

}  // namespace tessaly
