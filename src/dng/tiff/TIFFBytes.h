// The bytes of one TIFF file behind a single range check: the only gate to them while a file is parsed.
//
// Parsing asks for many small ranges that lie close together. They are served from a window of a few kilobytes, so
// that reading the metadata of a 100 MB file costs a handful of system calls and touches kilobytes.
//
// Used by one thread at a time: the window moves with every read.
#pragma once

#include "platform/InputFile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace tessaly {

class TIFFBytes {
 public:
  /// The longest range that can be looked at in one piece: a directory of 4,096 entries takes 49,158 bytes.
  static constexpr std::int64_t longestView = 65'536;

  /// Opens the file and checks size and header. Throws DNGError, or std::system_error where it cannot be read.
  explicit TIFFBytes(const std::filesystem::path& url);

  [[nodiscard]] const InputFile& file() const { return file_; }
  [[nodiscard]] bool little() const { return little_; }

  /// Throws truncated("TIFF field at <offset>, length <length>") unless the range lies in the file.
  void check(std::int64_t offset, std::int64_t length) const;

  /// The bytes of a range of at most `longestView` bytes, checked first. Valid until the next call of view or uint.
  [[nodiscard]] std::span<const std::byte> view(std::int64_t offset, std::int64_t length) const;

  /// The unsigned integer of `size` (1 to 8) bytes at `offset`, in the byte order of the file, range-checked first.
  /// Throws invalid("Integer overflow") for a value beyond 63 bits.
  [[nodiscard]] std::int64_t uint(std::int64_t offset, int size) const;

  /// The unsigned integer that these bytes (1 to 8) of the file form in its byte order.
  [[nodiscard]] std::uint64_t integer(std::span<const std::byte> bytes) const;

 private:
  void readHeader();
  void moveWindow(std::int64_t offset, std::int64_t length) const;

  InputFile file_;
  bool little_ = true;
  mutable std::int64_t windowOffset_ = 0;
  mutable std::vector<std::byte> window_;
};

}  // namespace tessaly
