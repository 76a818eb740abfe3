#include "platform/InputFile.h"

#include "platform/SystemCall.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cassert>
#include <cerrno>
#include <system_error>
#include <utility>

namespace tessaly {
namespace {

// Opening alone can have effects: a FIFO wakes its writer, a tape rewinds. So anything but a regular file stays closed.
bool namesRegularFile(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) throwSystemError(errno);
  return S_ISREG(status.st_mode);
}

// O_NONBLOCK in case the path became a FIFO since it was looked at.
int openForReading(const std::filesystem::path& path) {
  return callSystem([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); });
}

}  // namespace

InputFile::InputFile(const std::filesystem::path& path) {
  if (!namesRegularFile(path)) return;
  descriptor_ = openForReading(path);
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0) {
    const int error = errno;
    ::close(descriptor_);
    throw std::system_error(error, std::generic_category());
  }
  regular_ = S_ISREG(status.st_mode);
  permissions_ = status.st_mode & 0777;
  if (regular_) size_ = status.st_size;
}

InputFile::InputFile(InputFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      regular_(other.regular_),
      permissions_(other.permissions_),
      size_(other.size_) {}

InputFile& InputFile::operator=(InputFile&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  std::swap(regular_, other.regular_);
  std::swap(permissions_, other.permissions_);
  std::swap(size_, other.size_);
  return *this;
}

InputFile::~InputFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::size_t InputFile::readAt(std::int64_t offset, std::span<std::byte> into) const {
  assert(offset >= 0);
  assert(regular_);
  std::size_t done = 0;
  while (done < into.size()) {
    const auto got = callSystem([&] {
      return ::pread(descriptor_, into.data() + done, into.size() - done, offset + static_cast<off_t>(done));
    });
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

}  // namespace tessaly
