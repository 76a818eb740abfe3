// A regular file that is open for reading at any position.
//
// Positioned reads, not a memory mapping: a file that shrinks or fails while it is read gives a short read or an error
// here, where a mapping would end the process. Reads are safe from several threads.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

namespace tessaly {

class InputFile {
 public:
  /// Opens without ever blocking (a FIFO, a device) or following anything but the path. Throws std::system_error when
  /// the file cannot be opened; a folder, FIFO, socket or device opens as something that is not regular.
  explicit InputFile(const std::filesystem::path& path);
  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&& other) noexcept;
  ~InputFile();

  [[nodiscard]] bool isRegular() const { return regular_; }

  /// The permission bits, taken once when the file was opened.
  [[nodiscard]] mode_t permissions() const { return permissions_; }

  /// Size in bytes, taken once when the file was opened; 0 for anything that is not a regular file.
  [[nodiscard]] std::int64_t size() const { return size_; }

  /// Fills `into` from `offset` on and returns the number of bytes read: fewer than asked only at the end of the file.
  /// Throws std::system_error on an I/O error.
  [[nodiscard]] std::size_t readAt(std::int64_t offset, std::span<std::byte> into) const;

  /// The file descriptor, for calls that copy between files; owned by this object.
  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
  bool regular_ = false;
  mode_t permissions_ = 0;
  std::int64_t size_ = 0;
};

}  // namespace tessaly
