// A DNG file as a classic (32-bit offset) TIFF container: every image file directory that the file reaches, and
// bounded, overflow-checked readers for entry values. The only gate to the bytes of a file: whatever offset, count or
// size a file claims, nothing outside it is read and nothing larger than it is allocated.
//
// Values are read from the file when they are asked for. A container is used by one thread at a time.
#pragma once

#include "dng/tiff/ByteRangeSet.h"
#include "dng/tiff/TIFFBytes.h"
#include "dng/tiff/TIFFDirectory.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

class DNGContainer {
 public:
  /// Opens and parses the file. Throws DNGError, or std::system_error where the file cannot be opened or read.
  explicit DNGContainer(const std::filesystem::path& url);

  [[nodiscard]] const InputFile& file() const { return bytes_.file(); }
  [[nodiscard]] const TIFFBytes& bytes() const { return bytes_; }
  [[nodiscard]] bool little() const { return bytes_.little(); }

  /// All directories in the order of the walk: sub-directories before the next directory of their chain, the last
  /// listed sub-directory first. The first element is the file's first directory.
  [[nodiscard]] const std::vector<TIFFDirectory>& directories() const { return directories_; }

  /// Throws truncated("TIFF field at <offset>, length <length>") unless the range lies in the file.
  void check(std::int64_t offset, std::int64_t length) const { bytes_.check(offset, length); }

  /// The unsigned integer of `size` (1 to 8) bytes at `offset`, in the byte order of the file.
  [[nodiscard]] std::int64_t uint(std::int64_t offset, int size) const { return bytes_.uint(offset, size); }

  /// The values of a field; none for null. Throws unsupported for ASCII, signed and floating-point types and invalid
  /// for a zero denominator. Allocates 8 bytes a value: look at `count` first where it is known.
  [[nodiscard]] std::vector<double> numbers(const TIFFField* field) const;

  /// `numbers`, each truncated toward zero.
  [[nodiscard]] std::vector<std::int64_t> ints(const TIFFField* field) const;

  /// Throws what `numbers` would throw, without materialising a value: for fields whose count is judged first.
  void checkNumbers(const TIFFField* field) const;

  /// Visits `numbers` one by one.
  void forEachNumber(const TIFFField* field, const std::function<void(double)>& visit) const;

  /// The first of `numbers`; nothing for null or a field without values. All values are checked.
  [[nodiscard]] std::optional<double> firstNumber(const TIFFField* field) const;

  /// `firstNumber`, truncated toward zero.
  [[nodiscard]] std::optional<std::int64_t> firstInt(const TIFFField* field) const;

  /// One of `ints`; `index` must be below the field's count. All values are checked.
  [[nodiscard]] std::int64_t intAt(const TIFFField& field, std::int64_t index) const;

  /// The text of an ASCII field up to its first zero byte; nothing for null, another type or invalid UTF-8.
  [[nodiscard]] std::optional<std::string> string(const TIFFField* field) const;

  /// The main raw image: the largest full-resolution raw directory, the first of equally large ones.
  [[nodiscard]] const TIFFDirectory& rawDirectory() const;

 private:
  void checkVersion() const;
  void checkDenominators(const TIFFField& field) const;
  [[nodiscard]] double numberAt(const TIFFField& field, std::int64_t index) const;
  [[nodiscard]] std::int64_t firstIntOrZero(const TIFFDirectory& directory, std::int64_t tag) const;
  [[nodiscard]] bool isRawCandidate(const TIFFDirectory& directory) const;
  [[nodiscard]] bool isLarger(const TIFFDirectory& candidate, const TIFFDirectory& current) const;

  TIFFBytes bytes_;
  std::vector<TIFFDirectory> directories_;
  // Rationals whose denominators are known not to be zero, by file offset modulo 8.
  mutable std::array<ByteRangeSet, 8> checkedRationals_;
};

}  // namespace tessaly
