// The records of a TIFF container: image file directories and their entries, as offsets into the file.
//
// Values; they hold no bytes of the file.
#pragma once

#include <cstdint>
#include <map>

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
  [[nodiscard]] const TIFFField* field(std::int64_t tag) const {
    const auto found = fields.find(tag);
    return found == fields.end() ? nullptr : &found->second;
  }
};

}  // namespace tessaly
