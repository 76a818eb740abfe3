// A DNG file as a classic (32-bit offset) TIFF container: every image file directory that the file reaches, and
// bounded, overflow-checked readers for entry values. The only gate to the bytes of a file: whatever offset, count or
// size a file claims, nothing outside it is read and nothing larger than it is allocated.
//
// A container is used by one thread at a time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/InputFile.h"

namespace tessaly {

/// One directory entry.
struct TIFFField {
  std::int64_t tag = 0;
  std::int64_t type = 0;
  std::int64_t count = 0;     ///< number of values
  std::int64_t entry = 0;     ///< file offset of the 12-byte entry itself
  std::int64_t location = 0;  ///< file offset of the value bytes
  std::int64_t size = 0;      ///< byte length of the values

  bool operator==(const TIFFField&) const = default;
};

/// One image file directory.
struct TIFFDirectory {
  std::int64_t offset = 0;                   ///< file offset of the 16-bit entry count
  std::int64_t pointer = 0;                  ///< file offset of the 32-bit word that pointed here
  std::map<std::int64_t, TIFFField> fields;  ///< by tag
  std::int64_t nextPointer = 0;              ///< file offset of the 32-bit next-directory word

  /// The entry with this tag; null when the directory has none.
  [[nodiscard]] const TIFFField* field(std::int64_t tag) const;
};

class DNGContainer {
 public:
  /// Opens and parses the file. Throws DNGError, or std::system_error where the file cannot be opened or read.
  explicit DNGContainer(const std::filesystem::path& url);

  [[nodiscard]] const InputFile& file() const { return file_; }
  [[nodiscard]] bool little() const { return little_; }

  /// All directories in the order of the walk: sub-directories before the next directory of their chain, the last
  /// listed sub-directory first. The first element is the file's first directory.
  [[nodiscard]] const std::vector<TIFFDirectory>& directories() const { return directories_; }

  /// Throws truncated("TIFF field at <offset>, length <length>") unless the range lies in the file.
  void check(std::int64_t offset, std::int64_t length) const;

  /// The unsigned integer of `size` (1 to 8) bytes at `offset`, in the byte order of the file.
  [[nodiscard]] std::int64_t uint(std::int64_t offset, int size) const;

  /// The values of a field; none for null. Throws unsupported for ASCII, signed and floating-point types and invalid
  /// for a zero denominator. Allocates 8 bytes a value: look at `count` first where it is known.
  [[nodiscard]] std::vector<double> numbers(const TIFFField* field) const;

  /// `numbers`, each truncated toward zero.
  [[nodiscard]] std::vector<std::int64_t> ints(const TIFFField* field) const;

  /// The text of an ASCII field up to its first zero byte; nothing for null, another type or invalid UTF-8.
  [[nodiscard]] std::optional<std::string> string(const TIFFField* field) const;

  /// The main raw image: the largest full-resolution raw directory, the first of equally large ones.
  [[nodiscard]] const TIFFDirectory& rawDirectory() const;

 private:
  InputFile file_;
  bool little_ = true;
  std::vector<TIFFDirectory> directories_;
};

}  // namespace tessaly
