// The photometric interpretations of a raw image.
#pragma once

#include <cstdint>

namespace tessaly::Photometric {

inline constexpr std::int64_t blackIsZero = 1;    ///< monochrome
inline constexpr std::int64_t cfa = 32803;        ///< a colour mosaic
inline constexpr std::int64_t linearRaw = 34892;  ///< no mosaic, or none any more

}  // namespace tessaly::Photometric
