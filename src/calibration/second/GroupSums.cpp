#include "calibration/second/GroupSums.h"

#include "calibration/second/RowKernels.h"
#include "platform/ParallelBands.h"

#include <algorithm>

namespace tessaly::second {
namespace {

constexpr std::int16_t noneYet = -32000;
constexpr float warmthQuanta = 16;

void makeRatios(Plane& roots, const GroupModel& model, const BlockGrid& grid, int threads) {
  const std::int64_t width = grid.shape().width;
  forEachBand(grid.shape().height, threads, [&](const RowBand& band) {
    ModelRows noise(grid, model.noise);
    for (std::int64_t y = band.first; y < band.last; ++y)
      rootRatios(roots.data() + y * width, noise.row(y), width);
  });
}

ScoreScale scoreScale(const Plane& ratios, const GroupModel& model, const BlockGrid& grid, int threads) {
  const Spread spread = spreadOfPlane(
      ratios, grid.shape(), [&](std::int64_t y) { return model.votingColumns(grid, y); }, threads);
  const double factor = spread.sigma > 0 ? scoreQuanta / spread.sigma : 0;
  return {static_cast<float>(spread.median), static_cast<float>(factor)};
}

}  // namespace

MeanPlane::MeanPlane(const BlockGrid& grid, int threads)
    : grid_(grid), threads_(threads), weights_(grid.blocks(), 0.0), known_(static_cast<std::size_t>(grid.rows())) {}

void MeanPlane::add(const GroupModel& model, const Plane& values) {
  if (values_.empty()) values_.assign(grid_.shape().count(), 0);
  ++groups_;
  std::vector<float> shares(grid_.blocks(), 0.0F);
  for (std::size_t block = 0; block < grid_.blocks(); ++block) {
    const auto row = block / static_cast<std::size_t>(grid_.columns());
    const ColumnRange columns = grid_.blockColumns(static_cast<std::int64_t>(block) % grid_.columns());
    const auto& voting = model.voting[row];
    if (model.weight <= 0 || std::find(voting.begin(), voting.end(), columns) == voting.end()) continue;
    if (weights_[block] == 0) known_[row].push_back(columns);
    weights_[block] += model.weight;
    shares[block] = static_cast<float>(model.weight / weights_[block]);
  }
  forEachBand(grid_.shape().height, threads_, [&](const RowBand& band) {
    for (std::int64_t y = band.first; y < band.last; ++y) {
      const float* share = shares.data() + grid_.blockRow(y) * grid_.columns();
      for (std::int64_t column = 0; column < grid_.columns(); ++column) {
        const ColumnRange range = grid_.blockColumns(column);
        const std::int64_t start = y * grid_.shape().width + range.first;
        if (share[column] > 0)
          blend(values.data() + start, share[column], range.last - range.first, values_.data() + start);
      }
    }
  });
}

std::span<const ColumnRange> MeanPlane::known(std::int64_t y) const {
  return known_[static_cast<std::size_t>(grid_.blockRow(y))];
}

void addWarmth(const GroupModel& model, const Plane& median, const PlaneShape& shape, int threads, Plane& sums) {
  if (sums.empty()) sums.assign(shape.count(), 0);
  if (model.departureSigma <= 0) return;
  const auto factor = static_cast<float>(warmthQuanta / model.departureSigma);
  forEachBand(shape.height, threads, [&](const RowBand& band) {
    MirroredRows rows(median, shape);
    std::vector<std::int16_t> departures(static_cast<std::size_t>(shape.width));
    for (std::int64_t y = band.first; y < band.last; ++y) {
      rows.departures(y, departures.data());
      addScaled(departures.data(), factor, shape.width, sums.data() + y * shape.width);
    }
  });
}

void UnsteadySums::add(const GroupModel& model, GroupStack& stack, const BlockGrid& grid, int threads) {
  const PlaneShape& shape = grid.shape();
  if (groups++ == 0) {
    sums.assign(shape.count(), 0);
    worst.assign(shape.count(), noneYet);
  }
  makeRatios(stack.varianceRoots(), model, grid, threads);
  makeRatios(stack.trimmedRoots(), model, grid, threads);
  const ScoreScale variance = scoreScale(stack.varianceRoots(), model, grid, threads);
  const ScoreScale trimmed = scoreScale(stack.trimmedRoots(), model, grid, threads);
  forEachBand(shape.height, threads, [&](const RowBand& band) {
    for (std::int64_t y = band.first; y < band.last; ++y) {
      for (const ColumnRange& range : model.votingColumns(grid, y)) {
        const std::int64_t start = y * shape.width + range.first;
        addUnsteady({stack.varianceRoots().data() + start, stack.trimmedRoots().data() + start, sums.data() + start,
                     worst.data() + start},
                    variance, trimmed, range.last - range.first);
      }
    }
  });
}

}  // namespace tessaly::second
