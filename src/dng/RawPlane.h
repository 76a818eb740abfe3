// The samples of a raw image in memory.
#pragma once

#include "dng/DNGMetadata.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace tessaly {

/// std::allocator, except that resizing leaves new elements uninitialised: a plane is about to be filled, and touching
/// 48 MB twice costs more than decoding them.
template <typename T>
struct UninitializedAllocator : std::allocator<T> {
  template <typename U>
  struct rebind {
    using other = UninitializedAllocator<U>;
  };

  template <typename U, typename... Arguments>
  void construct(U* place, Arguments&&... arguments) {
    if constexpr (sizeof...(Arguments) == 0) {
      ::new (static_cast<void*>(place)) U;
    } else {
      ::new (static_cast<void*>(place)) U(std::forward<Arguments>(arguments)...);
    }
  }
};

/// Samples row after row; the sample at column x, row y has the index y × rawWidth + x. Resizing does not initialise.
using RawSamples = std::vector<std::uint16_t, UninitializedAllocator<std::uint16_t>>;

/// The whole raw image, masked border included, after the linearization table and before any black subtraction.
/// Invariant: samples.size() == metadata.rawWidth × metadata.rawHeight.
struct RawPlane {
  DNGMetadata metadata;
  RawSamples samples;
};

/// `count` adjacent samples of one row, in raw coordinates.
struct SampleRun {
  std::int64_t row = 0;
  std::int64_t column = 0;
  std::int64_t count = 0;

  bool operator==(const SampleRun&) const = default;
};

/// Which samples of a row are wanted, as runs from left to right that do not overlap; valid until the next call.
using WantedSamples = std::function<std::span<const SampleRun>(std::int64_t row)>;

}  // namespace tessaly
