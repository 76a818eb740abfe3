// Lays out TIFF directories for DNGBuilder: entries sorted by tag, then the values that do not fit into an entry, each
// on an even offset, in the order of their entries. Plain functions; nothing here checks that the result makes sense,
// because many tests need files that do not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tessaly::tools {

using Bytes = std::vector<std::byte>;

/// The values of one TIFF entry: numbers of the type's size (a rational is two numbers, a float is its bit pattern).
/// The two claims are lies for tests of hostile files: what the entry says instead of the truth.
struct TIFFValues {
  int type = 4;
  std::vector<std::int64_t> numbers;
  std::optional<std::int64_t> claimedCount = std::nullopt;
  std::optional<std::int64_t> claimedOffset = std::nullopt;  ///< out-of-line values only
};

using TIFFEntries = std::map<int, TIFFValues>;

[[nodiscard]] TIFFValues asciiValues(const std::string& text);  ///< with its closing zero byte

/// Bytes that the directory and its out-of-line values take; always even.
[[nodiscard]] std::int64_t directorySize(const TIFFEntries& entries);

/// Appends the directory at the end of `file`, whose size must be even; `next` is the offset of the next directory.
void appendDirectory(Bytes& file, const TIFFEntries& entries, std::int64_t next, bool littleEndian);

/// Appends the low `size` bytes of the number in the given byte order.
void appendNumber(Bytes& file, std::int64_t number, int size, bool littleEndian);

}  // namespace tessaly::tools
