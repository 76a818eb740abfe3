#include "calibration/columns/TrailingEvidence.h"

#include "calibration/MosaicSteps.h"
#include "calibration/columns/ColumnResidual.h"
#include "calibration/columns/OrderStatistics.h"
#include "platform/ParallelBands.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <utility>

namespace tessaly::CalibrationEngine {
namespace {

constexpr std::int64_t seedColumnMargin = 32;
constexpr std::int64_t leastRowsBelow = 128;
constexpr std::int64_t rowsSkippedBelowSeed = 16;
constexpr std::int64_t bottomMargin = 8;

// Multiples of 6 keep the colour of the mosaic. The seed's own column comes first.
constexpr std::array<std::int64_t, 9> columnOffsets{0, -24, -18, -12, -6, 6, 12, 18, 24};
constexpr std::int64_t farthestColumn = 24;

std::int64_t firstRow(const TrailSeed& seed) {
  return seed.y + rowsSkippedBelowSeed;
}

std::int64_t endRow(const DNGMetadata& metadata) {
  return metadata.activeY + metadata.activeHeight - bottomMargin;
}

std::int64_t rowCount(const TrailSeed& seed, const DNGMetadata& metadata) {
  const std::int64_t step = stepsOf(metadata).trailRow;
  return std::max<std::int64_t>((endRow(metadata) - firstRow(seed) + step - 1) / step, 0);
}

bool isUsable(const TrailSeed& seed, const DNGMetadata& metadata) {
  return seed.x >= metadata.activeX + seedColumnMargin &&
         seed.x < metadata.activeX + metadata.activeWidth - seedColumnMargin &&
         seed.y + leastRowsBelow < metadata.activeY + metadata.activeHeight;
}

// The cache lines, two or three, of all columns around a seed.
void prefetchColumns(const std::uint16_t* seed) {
  constexpr std::int64_t reach = farthestColumn + 7;
  __builtin_prefetch(seed - reach);
  __builtin_prefetch(seed);
  __builtin_prefetch(seed + reach);
}

using ColumnSums = std::array<double, columnOffsets.size()>;

// The residuals of a seed's nine columns, summed from top to bottom. The frame is walked row by row, for all seeds at
// once: down one column after the other every single sample would come from another page of memory. Seeds keep their
// margin to the border of the active area: all columns and their neighbours lie inside it.
//
// Even so each visit waits for memory. The same seed's next row is a step away, and a few hundred visits of other seeds
// come before it: asked for now it is there in time, and the whole takes a third of the time.
std::vector<ColumnSums> columnSums(std::span<const std::uint16_t> raw, std::span<const TrailSeed> seeds,
                                   const TrailRows& rows, const DNGMetadata& metadata) {
  const ResidualScale scale(metadata);
  const std::int64_t nextRow = stepsOf(metadata).trailRow * metadata.rawWidth;
  std::vector<ColumnSums> sums(seeds.size());
  for (std::int64_t row = metadata.activeY; row < rows.end(); ++row) {
    const std::uint16_t* const start = raw.data() + row * metadata.rawWidth;
    const bool hasNext = row + stepsOf(metadata).trailRow < rows.end();
    rows.forEachSeed(row, [&](std::size_t seed) {
      if (hasNext) prefetchColumns(start + nextRow + seeds[seed].x);
      for (std::size_t column = 0; column < columnOffsets.size(); ++column)
        sums[seed][column] += residualAt(start + seeds[seed].x + columnOffsets[column], scale);
    });
  }
  return sums;
}

// The mean of the seed's own column less the median of those beside it; 0 without rows.
double columnOffset(ColumnSums sums, std::int64_t rows) {
  if (rows == 0) return 0;
  for (double& sum : sums)
    sum /= static_cast<double>(rows);
  std::vector<double> neighbours(sums.begin() + 1, sums.end());
  return sums.front() - upperMedian(neighbours);
}

}  // namespace

std::vector<TrailSeed> trailSeeds(std::span<const CalibrationCandidate> pixels, const DNGMetadata& metadata) {
  std::map<std::int64_t, std::int64_t> topmost;
  for (const CalibrationCandidate& pixel : pixels) {
    const auto [column, isNew] = topmost.try_emplace(pixel.x, pixel.yStart);
    if (!isNew) column->second = std::min(column->second, pixel.yStart);
  }
  std::vector<TrailSeed> seeds;
  for (const auto& [x, y] : topmost) {
    if (isUsable({x, y}, metadata)) seeds.push_back({x, y});
  }
  return seeds;
}

TrailFrameEvidence trailFrameEvidence(std::span<const std::uint16_t> raw, std::string exposureKey,
                                      std::span<const TrailSeed> seeds, const DNGMetadata& metadata, int threads) {
  TrailFrameEvidence evidence{std::move(exposureKey), std::vector<double>(seeds.size())};
  forEachBand(static_cast<std::int64_t>(seeds.size()), threads, [&](const RowBand& share) {
    const auto first = static_cast<std::size_t>(share.first);
    const auto last = static_cast<std::size_t>(share.last);
    const TrailRows rows(seeds, first, last, metadata);
    const std::vector<ColumnSums> sums = columnSums(raw, seeds, rows, metadata);
    for (std::size_t seed = first; seed < last; ++seed)
      evidence.values[seed] = columnOffset(sums[seed], rowCount(seeds[seed], metadata));
  });
  return evidence;
}

TrailRows::TrailRows(std::span<const TrailSeed> seeds, std::size_t first, std::size_t last, const DNGMetadata& metadata)
    : end_(endRow(metadata)), entries_(static_cast<std::size_t>(stepsOf(metadata).trailRow)) {
  for (std::size_t seed = first; seed < last; ++seed) {
    const std::int64_t row = firstRow(seeds[seed]);
    entries_[static_cast<std::size_t>(row) % entries_.size()].push_back({seed, row});
  }
}

TrailSamples::TrailSamples(std::span<const TrailSeed> seeds, const DNGMetadata& metadata)
    : seeds_(seeds),
      rows_(seeds, 0, seeds.size(), metadata),
      reach_(farthestColumn + ResidualScale(metadata).offsets.back()) {}

std::span<const SampleRun> TrailSamples::ofRow(std::int64_t row) {
  runs_.clear();
  rows_.forEachSeed(row, [&](std::size_t seed) { add({row, seeds_[seed].x - reach_, 2 * reach_ + 1}); });
  return runs_;
}

// Seeds come from left to right; what overlaps or touches is one run.
void TrailSamples::add(const SampleRun& run) {
  const bool isApart = runs_.empty() || runs_.back().column + runs_.back().count < run.column;
  if (isApart) {
    runs_.push_back(run);
  } else {
    runs_.back().count = run.column + run.count - runs_.back().column;
  }
}

}  // namespace tessaly::CalibrationEngine
