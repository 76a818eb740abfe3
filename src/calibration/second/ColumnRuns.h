// The best run of a column: the rows in which it departs most from its neighbours, measured in standard deviations.
//
// score = |mean| / √(c² / L + e²) for a run of L blocks: c is the noise of a block, e what columns differ by anyway.
#pragma once

#include "calibration/second/ColumnProfiles.h"

#include <cstdint>
#include <vector>

namespace tessaly::second {

/// The shortest run.
inline constexpr std::int64_t leastBlocks = 6;

struct ColumnNoise {
  double block = 0;   ///< c
  double column = 0;  ///< e
};

/// Blocks from `first` up to, but excluding, `last`.
struct ColumnRun {
  std::int64_t first = 0;
  std::int64_t last = 0;
  double mean = 0;
  double score = 0;
};

/// A column, or a part of it, that departs from its neighbours.
struct FoundColumn {
  std::int64_t x = 0;
  std::int64_t firstRow = 0;
  std::int64_t lastRow = 0;  ///< inclusive
  bool isWhole = false;
  double mean = 0;  ///< quanta
  double score = 0;
};

[[nodiscard]] ColumnNoise columnNoise(const ColumnProfiles& profiles);

/// The best run of each of these columns, in their order.
[[nodiscard]] std::vector<ColumnRun> bestRuns(const ColumnProfiles& profiles, const std::vector<std::int64_t>& columns,
                                              const ColumnNoise& noise, int threads);

/// Its ends to the row, and whether it is the whole column after all.
[[nodiscard]] FoundColumn foundColumn(const ColumnProfiles& profiles, std::int64_t x, const ColumnRun& run,
                                      const ColumnNoise& noise);

}  // namespace tessaly::second
