// A sample of a copy that is not the source's: the code that is stored, by its place in the bits of the file.
//
// Eight bytes a patch, because a sensor may have a million of them. Patches sort by their place.
#pragma once

#include <cassert>
#include <compare>
#include <cstdint>

namespace tessaly {

class StoredPatch {
 public:
  /// `bit` is below 2^48; a file has at most 2^34 bits.
  StoredPatch(std::int64_t bit, std::uint16_t code) : packed_(static_cast<std::uint64_t>(bit) << 16U | code) {
    assert(bit >= 0 && bit < std::int64_t{1} << 48U);
  }

  [[nodiscard]] std::int64_t bit() const { return static_cast<std::int64_t>(packed_ >> 16U); }
  [[nodiscard]] std::uint16_t code() const { return static_cast<std::uint16_t>(packed_); }

  auto operator<=>(const StoredPatch&) const = default;

 private:
  std::uint64_t packed_;
};

}  // namespace tessaly
