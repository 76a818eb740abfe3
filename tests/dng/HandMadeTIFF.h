// A TIFF file written word by word, for tests of structures that no honest builder would make. Everything is written
// where the test says; gaps are zeros.
//
//   HandMadeTIFF().directory(8, {dngVersion(), {256, 4, 1, {100}}}).write(path);
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace tessaly::tests {

/// An entry with its values in the entry itself (`numbers`, up to 4 bytes of them), or at another place: one LONG.
struct HandMadeEntry {
  int tag = 0;
  int type = 4;
  std::int64_t count = 1;
  std::vector<std::int64_t> numbers;
  int numberSize = 4;  ///< bytes of each of the numbers
};

/// An entry whose values stand at `location`.
inline HandMadeEntry elsewhere(int tag, int type, std::int64_t count, std::int64_t location) {
  return {tag, type, count, {location}, 4};
}

inline HandMadeEntry dngVersion(std::int64_t major = 1) {
  return {50706, 1, 4, {major, 4, 0, 0}, 1};
}

class HandMadeTIFF {
 public:
  explicit HandMadeTIFF(bool little = true, std::int64_t firstDirectory = 8) : little_(little) {
    const char order = little ? 'I' : 'M';
    put(0, order, 1).put(1, order, 1).put(2, 42, 2).put(4, firstDirectory, 4);
  }

  HandMadeTIFF& put(std::int64_t offset, std::int64_t number, int size) {
    growTo(offset + size);
    for (int i = 0; i < size; ++i) {
      const int shift = 8 * (little_ ? i : size - 1 - i);
      bytes_[static_cast<std::size_t>(offset + i)] = static_cast<std::byte>(number >> shift);
    }
    return *this;
  }

  HandMadeTIFF& directory(std::int64_t offset, const std::vector<HandMadeEntry>& entries, std::int64_t next = 0) {
    put(offset, static_cast<std::int64_t>(entries.size()), 2);
    std::int64_t at = offset + 2;
    for (const HandMadeEntry& entry : entries) {
      putEntry(at, entry);
      at += 12;
    }
    return put(at, next, 4);
  }

  HandMadeTIFF& growTo(std::int64_t size) {
    if (static_cast<std::int64_t>(bytes_.size()) < size) bytes_.resize(static_cast<std::size_t>(size));
    return *this;
  }

  HandMadeTIFF& cutTo(std::int64_t size) {
    bytes_.resize(static_cast<std::size_t>(size));
    return *this;
  }

  /// Writes the bytes, followed by a hole up to `fileSize` where one is given.
  void write(const std::filesystem::path& path, std::int64_t fileSize = 0) const {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes_.data()), static_cast<std::streamsize>(bytes_.size()));
    file.close();
    if (!file) throw std::runtime_error("Cannot write " + path.string());
    if (fileSize > 0) std::filesystem::resize_file(path, static_cast<std::uintmax_t>(fileSize));
  }

 private:
  void putEntry(std::int64_t at, const HandMadeEntry& entry) {
    put(at, entry.tag, 2).put(at + 2, entry.type, 2).put(at + 4, entry.count, 4).put(at + 8, 0, 4);
    std::int64_t value = at + 8;
    for (const std::int64_t number : entry.numbers) {
      put(value, number, entry.numberSize);
      value += entry.numberSize;
    }
  }

  bool little_;
  std::vector<std::byte> bytes_;
};

}  // namespace tessaly::tests
