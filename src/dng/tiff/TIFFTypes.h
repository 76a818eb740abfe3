// The value types of classic TIFF 6.0 and how many bytes a value of each takes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tessaly::TIFFType {

inline constexpr std::int64_t byte = 1;
inline constexpr std::int64_t ascii = 2;
inline constexpr std::int64_t shortInteger = 3;
inline constexpr std::int64_t longInteger = 4;
inline constexpr std::int64_t rational = 5;
inline constexpr std::int64_t undefined = 7;
inline constexpr std::int64_t signedRational = 10;
inline constexpr std::int64_t directory = 13;

/// Bytes of one value; 0 for a type that classic TIFF does not know (BigTIFF's 16 to 18 among them).
[[nodiscard]] constexpr std::int64_t valueSize(std::int64_t type) {
  constexpr std::array<std::int64_t, 14> sizes{0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
  return type >= 0 && type < std::int64_t{sizes.size()} ? sizes[static_cast<std::size_t>(type)] : 0;
}

}  // namespace tessaly::TIFFType
