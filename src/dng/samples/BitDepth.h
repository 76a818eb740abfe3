// The bit depths that raw samples may have: the one list from which the reader's rule, the kernels of packing and
// unpacking and all checks follow.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

namespace tessaly {

inline constexpr std::array<std::int64_t, 5> supportedBitDepths{8, 10, 12, 14, 16};

[[nodiscard]] constexpr bool isSupportedBitDepth(std::int64_t bits) {
  for (const std::int64_t supported : supportedBitDepths)
    if (bits == supported) return true;
  return false;
}

/// Throws unsupported("Raw bit depth <bits>").
[[noreturn]] void throwUnsupportedBitDepth(std::int64_t bits);

inline void requireSupportedBitDepth(std::int64_t bits) {
  if (!isSupportedBitDepth(bits)) throwUnsupportedBitDepth(bits);
}

template <unsigned Bits>
using BitDepth = std::integral_constant<unsigned, Bits>;

template <typename Visit, std::size_t... Index>
void withBitDepth(std::int64_t bits, Visit visit, std::index_sequence<Index...>) {
  const bool isKnown =
      ((bits == supportedBitDepths[Index] && (visit(BitDepth<unsigned{supportedBitDepths[Index]}>()), true)) || ...);
  if (!isKnown) throwUnsupportedBitDepth(bits);
}

/// Calls visit(BitDepth<bits>()), so that the depth is a constant there. Throws unsupported("Raw bit depth <bits>").
template <typename Visit>
void withBitDepth(std::int64_t bits, Visit visit) {
  withBitDepth(bits, visit, std::make_index_sequence<supportedBitDepths.size()>());
}

}  // namespace tessaly
