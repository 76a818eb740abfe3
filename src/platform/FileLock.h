// A lock that one process, and one thread of it, holds at a time, for what several of them change. It ends with the
// process, however that ends.
#pragma once

#include <filesystem>

namespace tessaly {

class FileLock {
 public:
  /// Waits for the lock, which is a file of its own beside what it guards: made where it is missing, never removed.
  /// Throws std::system_error when it cannot be made. Where the file system knows no locks nobody waits.
  explicit FileLock(const std::filesystem::path& path);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();

 private:
  int descriptor_;
};

}  // namespace tessaly
