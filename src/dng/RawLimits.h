// How large a raw image may be.
#pragma once

#include <cstdint>

namespace tessaly {

/// The longest side of an image or a tile.
inline constexpr std::int64_t maximumRawSide = 100'000;

/// The most samples of an image: its plane takes 500 MB then.
inline constexpr std::int64_t maximumRawPixels = 250'000'000;

[[nodiscard]] constexpr bool isRawSide(std::int64_t value) {
  return value >= 1 && value <= maximumRawSide;
}

[[nodiscard]] constexpr bool isRawSize(std::int64_t width, std::int64_t height) {
  return isRawSide(width) && isRawSide(height) && width * height <= maximumRawPixels;
}

}  // namespace tessaly
