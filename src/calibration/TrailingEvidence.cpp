#include "calibration/TrailingEvidence.h"

#include "calibration/ColumnResidual.h"
#include "calibration/OrderStatistics.h"
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

/// The rows measured below one seed: first, first + step, …, below end.
struct TrailRows {
  std::int64_t first = 0;
  std::int64_t end = 0;
  std::int64_t step = 1;

  [[nodiscard]] bool contains(std::int64_t row) const { return row >= first && row < end && (row - first) % step == 0; }

  [[nodiscard]] std::int64_t count() const { return first < end ? (end - first + step - 1) / step : 0; }
};

// An odd step on a mosaic, so that both rows of the colour cell take turns.
std::int64_t rowStep(const DNGMetadata& metadata) {
  return metadata.cfaLayout ? 7 : 8;
}

TrailRows trailRows(const TrailSeed& seed, const DNGMetadata& metadata) {
  return {seed.y + rowsSkippedBelowSeed, metadata.activeY + metadata.activeHeight - bottomMargin, rowStep(metadata)};
}

bool isUsable(const TrailSeed& seed, const DNGMetadata& metadata) {
  return seed.x >= metadata.activeX + seedColumnMargin &&
         seed.x < metadata.activeX + metadata.activeWidth - seedColumnMargin &&
         seed.y + leastRowsBelow < metadata.activeY + metadata.activeHeight;
}

using ColumnMeans = std::array<double, columnOffsets.size()>;

// Seeds keep their margin to the border of the active area: all nine columns and their neighbours lie inside it.
ColumnMeans columnMeans(std::span<const std::uint16_t> raw, const TrailSeed& seed, const DNGMetadata& metadata) {
  const ResidualScale scale(metadata);
  const TrailRows rows = trailRows(seed, metadata);
  ColumnMeans sums{};
  for (std::int64_t row = rows.first; row < rows.end; row += rows.step) {
    const std::uint16_t* const sample = raw.data() + row * metadata.rawWidth + seed.x;
    for (std::size_t column = 0; column < sums.size(); ++column)
      sums[column] += residualAt(sample + columnOffsets[column], scale);
  }
  for (double& sum : sums)
    sum /= static_cast<double>(rows.count());
  return sums;
}

double columnOffset(std::span<const std::uint16_t> raw, const TrailSeed& seed, const DNGMetadata& metadata) {
  if (trailRows(seed, metadata).count() == 0) return 0;
  const ColumnMeans means = columnMeans(raw, seed, metadata);
  std::vector<double> neighbours(means.begin() + 1, means.end());
  return means.front() - upperMedian(neighbours);
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
    for (auto seed = static_cast<std::size_t>(share.first); seed < static_cast<std::size_t>(share.last); ++seed)
      evidence.values[seed] = columnOffset(raw, seeds[seed], metadata);
  });
  return evidence;
}

TrailSamples::TrailSamples(std::span<const TrailSeed> seeds, const DNGMetadata& metadata)
    : metadata_(metadata),
      reach_(farthestColumn + ResidualScale(metadata).offsets.back()),
      seeds_(static_cast<std::size_t>(rowStep(metadata))) {
  for (const TrailSeed& seed : seeds)
    seeds_[static_cast<std::size_t>(trailRows(seed, metadata).first % rowStep(metadata))].push_back(seed);
}

std::span<const SampleRun> TrailSamples::ofRow(std::int64_t row) {
  runs_.clear();
  for (const TrailSeed& seed : seeds_[static_cast<std::size_t>(row % rowStep(metadata_))]) {
    if (trailRows(seed, metadata_).contains(row)) add({row, seed.x - reach_, 2 * reach_ + 1});
  }
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
