#include "platform/FileSystem.h"

#include "platform/WriterLock.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <signal.h>
#include <stdio.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace tessaly {
namespace {

// By default SIGXFSZ ends the process at the first write beyond RLIMIT_FSIZE; one file too large must not do that.
void surviveFileSizeLimit() {
  struct sigaction action {};
  if (::sigaction(SIGXFSZ, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) return;
  action.sa_handler = SIG_IGN;
  ::sigaction(SIGXFSZ, &action, nullptr);
}

struct RealFileSystem final : FileSystem {
  RealFileSystem() { surviveFileSizeLimit(); }
};

}  // namespace

FileSystem& FileSystem::system() {
  static RealFileSystem real;
  return real;
}

int FileSystem::createNew(const std::filesystem::path& path, mode_t mode) {
  return ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode);
}

int FileSystem::lock(int descriptor) {
  return lockAsWriter(descriptor);
}

// Space on a disk is allocated once instead of with every write; a file system in memory would only do the work twice.
int FileSystem::reserve(int descriptor, std::int64_t length) {
  return isInMemory(descriptor) ? 0 : ::fallocate(descriptor, 0, 0, length);
}

bool FileSystem::isInMemory(int descriptor) {
  struct statfs status {};
  return ::fstatfs(descriptor, &status) == 0 && (status.f_type == TMPFS_MAGIC || status.f_type == RAMFS_MAGIC);
}

ssize_t FileSystem::writeAt(int descriptor, std::int64_t offset, std::span<const std::byte> bytes) {
  return ::pwrite(descriptor, bytes.data(), bytes.size(), offset);
}

int FileSystem::clone(const FileRange& source, int target) {
  file_clone_range request{};
  request.src_fd = source.descriptor;
  request.src_offset = static_cast<std::uint64_t>(source.offset);
  request.src_length = static_cast<std::uint64_t>(source.length);
  request.dest_offset = static_cast<std::uint64_t>(source.offset);
  return ::ioctl(target, FICLONERANGE, &request);
}

ssize_t FileSystem::copyRange(const FileRange& source, int target, std::int64_t to) {
  off64_t from = source.offset;
  off64_t into = to;
  return ::copy_file_range(source.descriptor, &from, target, &into, static_cast<std::size_t>(source.length), 0);
}

int FileSystem::setMode(int descriptor, mode_t mode) {
  return ::fchmod(descriptor, mode);
}

int FileSystem::setAttribute(int descriptor, const std::string& name, std::span<const std::byte> value) {
  return ::fsetxattr(descriptor, name.c_str(), value.data(), value.size(), 0);
}

int FileSystem::startWriting(const FileRange& range) {
  return ::sync_file_range(range.descriptor, range.offset, range.length, SYNC_FILE_RANGE_WRITE);
}

int FileSystem::synchronize(int descriptor) {
  return ::fsync(descriptor);
}

int FileSystem::dropCache(int descriptor) {
  errno = ::posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
  return errno == 0 ? 0 : -1;
}

int FileSystem::synchronizeFolder(const std::filesystem::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return -1;
  const int result = ::fsync(descriptor);
  const int error = errno;
  ::close(descriptor);
  errno = error;
  return result;
}

int FileSystem::renameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
  return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
}

int FileSystem::renameReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
  return ::rename(from.c_str(), to.c_str());
}

int FileSystem::link(const std::filesystem::path& existing, const std::filesystem::path& name) {
  return ::link(existing.c_str(), name.c_str());
}

int FileSystem::unlink(const std::filesystem::path& path) {
  return ::unlink(path.c_str());
}

int FileSystem::createFolders(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  errno = error.value();
  return error ? -1 : 0;
}

}  // namespace tessaly
