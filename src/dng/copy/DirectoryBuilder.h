// A directory that is being written: entries of an old one carried over, others put in their place or added.
//
// In the file the directory comes first (entry count, entries by rising tag, next-directory word), then the values of
// more than 4 bytes that belong to it, each on an even offset.
//
// A value; it holds no bytes of the source but the 4-byte slots of its entries.
#pragma once

#include "dng/copy/CopyPlan.h"
#include "dng/tiff/TIFFBytes.h"
#include "dng/tiff/TIFFDirectory.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tessaly {

class DirectoryBuilder {
 public:
  explicit DirectoryBuilder(bool littleEndian) : little_(littleEndian) {}

  /// Takes an entry over as it stands: a value of more than 4 bytes stays where it is in the file.
  void carry(const TIFFBytes& source, const TIFFField& field);

  /// Takes an entry over with its value, which moves along when it has more than 4 bytes.
  void carryWithValue(const TIFFBytes& source, const TIFFField& field);

  /// An entry of one unsigned integer (SHORT, LONG or IFD), in the place of all entries with this tag.
  void putInteger(std::int64_t tag, std::int64_t type, std::int64_t value);

  /// An entry of one RATIONAL, in the place of all entries with this tag.
  void putRational(std::int64_t tag, std::int64_t numerator, std::int64_t denominator);

  [[nodiscard]] bool has(std::int64_t tag) const;

  /// The number of bytes from an even offset on, values included.
  [[nodiscard]] std::int64_t length() const;

  /// The directory as it stands at an even `offset`, with the word that points to the next directory. Everything must
  /// lie below 2^32.
  [[nodiscard]] DirectoryImage build(std::int64_t offset, std::int64_t nextDirectory) const;

 private:
  struct Entry {
    std::int64_t tag = 0;
    std::int64_t type = 0;
    std::int64_t count = 0;
    std::array<std::byte, 4> slot{};     // the value, or where it stays
    std::vector<std::byte> value;        // a new value of more than 4 bytes
    std::optional<TIFFField> movedFrom;  // an old value of more than 4 bytes that moves along

    [[nodiscard]] std::int64_t outside() const;
  };

  void put(Entry entry);
  [[nodiscard]] std::vector<Entry> sortedEntries() const;
  [[nodiscard]] std::int64_t blockLength() const;
  void store(const Entry& entry, std::span<std::byte> record) const;

  bool little_;
  std::vector<Entry> entries_;
};

/// Writes an unsigned integer into all bytes of `into` (1 to 8), in this byte order.
void storeInteger(std::span<std::byte> into, std::int64_t value, bool littleEndian);

/// The bytes of an entry of one IFD or LONG that follow its tag: type, count, value.
[[nodiscard]] std::vector<std::byte> pointerRecord(std::int64_t type, std::int64_t value, bool littleEndian);

}  // namespace tessaly
