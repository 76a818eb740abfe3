// Work on the rows of a plane, in one band of adjacent rows a thread.
//
// The caller's thread does the first band and returns when all are done. Bands never share a row; whoever keeps the
// results of rows apart, or joins those of bands in the order of the bands, has results that do not depend on the
// number of threads.
#pragma once

#include <cstdint>
#include <functional>

namespace tessaly {

/// The rows from `first` up to, but excluding, `last`.
struct RowBand {
  std::int64_t index = 0;  ///< of the band, 0 … number of bands − 1
  std::int64_t first = 0;
  std::int64_t last = 0;
};

/// The number of threads that the machine runs at the same time, at least 1.
[[nodiscard]] int availableThreads();

/// The number of bands that `rows` rows make: one a thread, but none without a row.
[[nodiscard]] std::int64_t bandCount(std::int64_t rows, int threads);

/// Calls `work` once for each of the bandCount() bands, at the same time. When calls throw, the exception of the first
/// such band is thrown here after all have ended. Where the system refuses a thread the caller's does that band too.
void forEachBand(std::int64_t rows, int threads, const std::function<void(const RowBand&)>& work);

}  // namespace tessaly
