// A few lines that read TIFF directories from bytes, as a second opinion on what the writer appends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace tessaly::tests {

struct PlainEntry {
  std::int64_t type = 0;
  std::int64_t count = 0;
  std::vector<std::byte> value;  ///< the value bytes, wherever they stand
  std::int64_t offset = 0;       ///< where they stand
  bool operator==(const PlainEntry&) const = default;
};

struct PlainDirectory {
  std::map<std::int64_t, PlainEntry> entries;
  std::vector<std::int64_t> tags;  ///< in file order
  std::int64_t next = 0;
};

class PlainTIFF {
 public:
  explicit PlainTIFF(std::vector<std::byte> file) : file_(std::move(file)), little_(file_.at(0) == std::byte{'I'}) {}

  [[nodiscard]] std::int64_t number(std::int64_t offset, int size) const {
    std::int64_t value = 0;
    for (int i = 0; i < size; ++i) {
      const int shift = 8 * (little_ ? i : size - 1 - i);
      value |= std::to_integer<std::int64_t>(file_.at(static_cast<std::size_t>(offset + i))) << shift;
    }
    return value;
  }

  [[nodiscard]] std::int64_t first() const { return number(4, 4); }

  [[nodiscard]] PlainDirectory directory(std::int64_t offset) const {
    PlainDirectory result;
    const std::int64_t count = number(offset, 2);
    for (std::int64_t i = 0; i < count; ++i)
      readEntry(offset + 2 + 12 * i, result);
    result.next = number(offset + 2 + 12 * count, 4);
    return result;
  }

  /// The only number of an entry.
  [[nodiscard]] std::int64_t value(const PlainEntry& entry) const {
    return number(entry.offset, static_cast<int>(entry.value.size()));
  }

  [[nodiscard]] std::vector<std::byte> bytes(std::int64_t offset, std::int64_t length) const {
    return {file_.begin() + offset, file_.begin() + offset + length};
  }

  [[nodiscard]] std::int64_t size() const { return static_cast<std::int64_t>(file_.size()); }

 private:
  void readEntry(std::int64_t offset, PlainDirectory& into) const {
    static constexpr int sizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
    PlainEntry entry;
    entry.type = number(offset + 2, 2);
    entry.count = number(offset + 4, 4);
    const std::int64_t size = entry.count * sizes[entry.type];
    entry.offset = size <= 4 ? offset + 8 : number(offset + 8, 4);
    entry.value = bytes(entry.offset, size);
    into.tags.push_back(number(offset, 2));
    into.entries[number(offset, 2)] = entry;
  }

  std::vector<std::byte> file_;
  bool little_;
};

}  // namespace tessaly::tests
