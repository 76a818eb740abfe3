// By what one sees, without reading it, that a file has changed.
#pragma once

#include <sys/stat.h>

#include <ctime>
#include <filesystem>

namespace tessaly {

class FileStamp {
 public:
  /// Of no file; every file may differ from it.
  FileStamp() = default;

  /// Of what stands at the path now; nothing standing there is a state like any other.
  explicit FileStamp(const std::filesystem::path& path) : isTaken_(true), takenAt_(std::time(nullptr)) {
    if (::stat(path.c_str(), &status_) != 0) status_ = {};
  }

  /// Whether the file may have changed since `earlier`. A change that comes within the second in which the stamp was
  /// taken may leave the time of the file as it is: such a stamp proves nothing.
  [[nodiscard]] bool mayDifferFrom(const FileStamp& earlier) const {
    return !earlier.isTaken_ || status_.st_dev != earlier.status_.st_dev || status_.st_ino != earlier.status_.st_ino ||
           status_.st_size != earlier.status_.st_size || differs(status_.st_mtim, earlier.status_.st_mtim) ||
           differs(status_.st_ctim, earlier.status_.st_ctim) || earlier.takenAt_ <= earlier.status_.st_ctim.tv_sec + 1;
  }

 private:
  static bool differs(const timespec& one, const timespec& other) {
    return one.tv_sec != other.tv_sec || one.tv_nsec != other.tv_nsec;
  }

  bool isTaken_ = false;
  std::time_t takenAt_ = 0;
  struct stat status_ {};
};

}  // namespace tessaly
