#include "calibration/second/ColumnRuns.h"

#include "calibration/VectorClones.h"
#include "platform/ParallelBands.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace tessaly::second {
namespace {

constexpr double wholePart = 0.85;     // of the blocks
constexpr double leastStepSigma = 5;   // from the rest of the column
constexpr std::int64_t endBlocks = 2;  // on either side of an end, in which it is looked for row by row
constexpr std::size_t lanes = 32;      // columns that are searched at the same time

using Lanes = std::array<float, lanes>;

/// The best runs of `lanes` columns: the squared score, and where it is.
struct BestLanes {
  Lanes score{};
  std::array<std::int32_t, lanes> first{};
  std::array<std::int32_t, lanes> last{};
};

/// From block `first` up to, but not including, `last`.
struct Run {
  std::int32_t first;
  std::int32_t last;
};

TESSALY_VECTOR_CLONES
void compare(const float* __restrict before, const float* __restrict after, float factor, Run run, BestLanes& best) {
  float* __restrict score = best.score.data();
  std::int32_t* __restrict firsts = best.first.data();
  std::int32_t* __restrict lasts = best.last.data();
  for (std::size_t lane = 0; lane < lanes; ++lane) {
    const float sum = after[lane] - before[lane];
    const float squared = sum * sum * factor;
    const bool isBetter = squared > score[lane];
    score[lane] = isBetter ? squared : score[lane];
    firsts[lane] = isBetter ? run.first : firsts[lane];
    lasts[lane] = isBetter ? run.last : lasts[lane];
  }
}

/// 1 / (L c² + L² e²), by L.
std::vector<float> scoreFactors(std::int64_t blocks, const ColumnNoise& noise) {
  std::vector<float> factors(static_cast<std::size_t>(blocks) + 1, 0.0F);
  for (std::size_t length = 1; length < factors.size(); ++length) {
    const auto l = static_cast<double>(length);
    const double variance = l * noise.block * noise.block + l * l * noise.column * noise.column;
    factors[length] = variance > 0 ? static_cast<float>(1 / variance) : 0;
  }
  return factors;
}

/// Running sums of the columns from `start` on, one row of lanes a block.
std::vector<Lanes> runningSums(const ColumnProfiles& profiles, std::span<const std::int64_t> columns) {
  std::vector<Lanes> sums(static_cast<std::size_t>(profiles.blocks()) + 1);
  sums[0].fill(0);
  for (std::size_t block = 0; block + 1 < sums.size(); ++block) {
    sums[block + 1] = sums[block];
    const float* means = profiles.blockRow(static_cast<std::int64_t>(block));
    for (std::size_t lane = 0; lane < columns.size(); ++lane)
      sums[block + 1][lane] += means[columns[lane]];
  }
  return sums;
}

void searchLanes(const ColumnProfiles& profiles, std::span<const std::int64_t> columns,
                 const std::vector<float>& factors, ColumnRun* runs) {
  const std::vector<Lanes> sums = runningSums(profiles, columns);
  const auto blocks = static_cast<std::int32_t>(profiles.blocks());
  const auto least = static_cast<std::int32_t>(std::min<std::int64_t>(leastBlocks, blocks));
  BestLanes best;
  for (std::int32_t first = 0; first + least <= blocks; ++first) {
    for (std::int32_t last = first + least; last <= blocks; ++last) {
      compare(sums[static_cast<std::size_t>(first)].data(), sums[static_cast<std::size_t>(last)].data(),
              factors[static_cast<std::size_t>(last - first)], {first, last}, best);
    }
  }
  for (std::size_t lane = 0; lane < columns.size(); ++lane) {
    const auto first = static_cast<std::size_t>(best.first[lane]);
    const auto last = static_cast<std::size_t>(std::max(best.last[lane], best.first[lane] + 1));
    const double mean = (sums[last][lane] - sums[first][lane]) / static_cast<double>(last - first);
    runs[lane] = {best.first[lane], best.last[lane], mean, std::sqrt(static_cast<double>(best.score[lane]))};
  }
}

/// The blocks in which a step of half the mean, taken off, leaves the largest sum.
ColumnRun sharpened(const ColumnProfiles& profiles, std::int64_t x, const ColumnRun& run) {
  const double sign = run.mean < 0 ? -1 : 1;
  const double half = std::abs(run.mean) / 2;
  ColumnRun best = run;
  double bestSum = 0;
  double sum = 0;
  std::int64_t first = 0;
  for (std::int64_t block = 0; block < profiles.blocks(); ++block) {
    sum += sign * static_cast<double>(profiles.blockRow(block)[x]) - half;
    if (sum <= 0) {
      sum = 0;
      first = block + 1;
    } else if (sum > bestSum) {
      bestSum = sum;
      best.first = first;
      best.last = block + 1;
    }
  }
  return best;
}

double meanOf(const ColumnProfiles& profiles, std::int64_t x, std::int64_t first, std::int64_t last) {
  double sum = 0;
  for (std::int64_t block = first; block < last; ++block)
    sum += static_cast<double>(profiles.blockRow(block)[x]);
  return last > first ? sum / static_cast<double>(last - first) : 0;
}

bool isWhole(const ColumnProfiles& profiles, std::int64_t x, const ColumnRun& run, const ColumnNoise& noise) {
  const auto length = static_cast<double>(run.last - run.first);
  const auto blocks = static_cast<double>(profiles.blocks());
  if (length >= wholePart * blocks) return true;
  const double inside = meanOf(profiles, x, run.first, run.last);
  const double all = meanOf(profiles, x, 0, profiles.blocks());
  const double rest = (all * blocks - inside * length) / (blocks - length);
  const double sigma = noise.block * std::sqrt(1 / length + 1 / (blocks - length));
  return std::abs(inside - rest) < leastStepSigma * sigma;
}

/// The row, from `from` in steps of `step` up to `to`, up to which the run's sum rises most.
std::int64_t sharpEnd(const ColumnProfiles& profiles, std::int64_t x, double mean, std::array<std::int64_t, 3> range) {
  const auto [from, to, step] = range;
  const double sign = mean < 0 ? -1 : 1;
  double sum = 0;
  double bestSum = 0;
  std::int64_t best = from;
  for (std::int64_t y = from; y != to + step; y += step) {
    sum += sign * profiles.residual(x, y) - std::abs(mean) / 2;
    if (sum <= bestSum) continue;
    bestSum = sum;
    best = y;
  }
  return best;
}

}  // namespace

ColumnNoise columnNoise(const ColumnProfiles& profiles) {
  const std::int64_t width = profiles.shape().width;
  std::vector<float> means;
  std::vector<float> columns(static_cast<std::size_t>(width), 0.0F);
  for (std::int64_t block = 0; block < profiles.blocks(); ++block) {
    const float* row = profiles.blockRow(block);
    means.insert(means.end(), row, row + width);
    for (std::int64_t x = 0; x < width; ++x)
      columns[static_cast<std::size_t>(x)] += row[x] / static_cast<float>(profiles.blocks());
  }
  const double block = spreadOf(std::move(means)).sigma;
  const double column = spreadOf(std::move(columns)).sigma;
  const double natural = column * column - block * block / static_cast<double>(profiles.blocks());
  return {block, std::sqrt(std::max(natural, 0.0))};
}

std::vector<ColumnRun> bestRuns(const ColumnProfiles& profiles, const std::vector<std::int64_t>& columns,
                                const ColumnNoise& noise, int threads) {
  const std::vector<float> factors = scoreFactors(profiles.blocks(), noise);
  std::vector<ColumnRun> runs(columns.size());
  const std::int64_t groups = static_cast<std::int64_t>((columns.size() + lanes - 1) / lanes);
  forEachBand(groups, threads, [&](const RowBand& band) {
    for (std::int64_t group = band.first; group < band.last; ++group) {
      const std::size_t start = static_cast<std::size_t>(group) * lanes;
      const std::size_t count = std::min(lanes, columns.size() - start);
      searchLanes(profiles, std::span(columns).subspan(start, count), factors, runs.data() + start);
    }
  });
  return runs;
}

FoundColumn foundColumn(const ColumnProfiles& profiles, std::int64_t x, const ColumnRun& run,
                        const ColumnNoise& noise) {
  const ColumnRun sharp = sharpened(profiles, x, run);
  const std::int64_t height = profiles.shape().height;
  FoundColumn found{x, 0, height - 1, true, meanOf(profiles, x, sharp.first, sharp.last), run.score};
  if (isWhole(profiles, x, sharp, noise)) return found;
  const auto edge = [&](std::int64_t block) {
    return std::clamp<std::int64_t>(profiles.firstRow(std::clamp<std::int64_t>(block, 0, profiles.blocks())), 0,
                                    height);
  };
  const std::int64_t innerFirst = std::min(edge(sharp.first + endBlocks), edge(sharp.last)) - 1;
  const std::int64_t innerLast = std::max(edge(sharp.last - endBlocks), edge(sharp.first));
  found.isWhole = false;
  if (sharp.first > 1)
    found.firstRow = sharpEnd(profiles, x, found.mean, {innerFirst, edge(sharp.first - endBlocks), -1});
  if (sharp.last < profiles.blocks() - 1)
    found.lastRow = sharpEnd(profiles, x, found.mean, {innerLast, edge(sharp.last + endBlocks) - 1, 1});
  if (found.firstRow < edge(1)) found.firstRow = 0;
  if (found.lastRow >= edge(profiles.blocks() - 1)) found.lastRow = height - 1;
  found.isWhole = found.firstRow == 0 && found.lastRow == height - 1;
  return found;
}

}  // namespace tessaly::second
