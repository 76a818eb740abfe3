#include "platform/MoveFile.h"

#include "platform/SystemCall.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tessaly {
namespace {

// The answers of file systems and sandboxes that do not know a call, as opposed to reasons why it cannot succeed.
bool meansNotOffered(int errorNumber) {
  return errorNumber == EINVAL || errorNumber == ENOSYS || errorNumber == EOPNOTSUPP || errorNumber == EPERM ||
         errorNumber == EXDEV || errorNumber == EMLINK;
}

// Whether the call succeeded; false when the system does not offer it, every other failure is thrown.
template <typename Call>
bool succeeds(Call call) {
  if (retryWhenInterrupted(call) == 0) return true;
  if (!meansNotOffered(errno)) throwSystemError(errno);
  return false;
}

// An empty file of our own under the final name, which the file may replace.
class Placeholder {
 public:
  Placeholder(FileSystem& system, const std::filesystem::path& path)
      : system_(system), path_(path), descriptor_(callSystem([&] { return system.createNew(path, 0600); })) {}

  Placeholder(const Placeholder&) = delete;
  Placeholder& operator=(const Placeholder&) = delete;
  ~Placeholder() { ::close(descriptor_); }

  // Still the file that was made here, and nobody has written to it.
  [[nodiscard]] bool isStillOursAndEmpty() const {
    struct stat opened {};
    struct stat named {};
    if (::fstat(descriptor_, &opened) != 0 || ::lstat(path_.c_str(), &named) != 0) return false;
    return opened.st_dev == named.st_dev && opened.st_ino == named.st_ino && named.st_size == 0;
  }

  void removeIfStillOurs() {
    if (isStillOursAndEmpty()) system_.unlink(path_);
  }

 private:
  FileSystem& system_;
  std::filesystem::path path_;
  int descriptor_;
};

void moveOverPlaceholder(FileSystem& system, const std::filesystem::path& from, const std::filesystem::path& to) {
  Placeholder placeholder(system, to);
  if (!placeholder.isStillOursAndEmpty()) throwSystemError(EEXIST);
  if (retryWhenInterrupted([&] { return system.renameReplacing(from, to); }) == 0) return;
  const int error = errno;
  placeholder.removeIfStillOurs();
  throwSystemError(error);
}

}  // namespace

void moveWithoutReplacing(FileSystem& system, const std::filesystem::path& from, const std::filesystem::path& to) {
  if (succeeds([&] { return system.renameWithoutReplacing(from, to); })) return;
  if (succeeds([&] { return system.link(from, to); })) {
    // The file has its name; an old one that cannot be removed does no harm.
    system.unlink(from);
    return;
  }
  moveOverPlaceholder(system, from, to);
}

}  // namespace tessaly
