#include "calibration/second/ColumnProfiles.h"

#include "calibration/second/RowKernels.h"
#include "platform/ParallelBands.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tessaly::second {
namespace {

constexpr std::int64_t rowsOfBlock = 16;
constexpr double clipSigma = 4;

}  // namespace

ColumnProfiles::ColumnProfiles(const Plane& plane, const PlaneShape& shape, const IgnoredSamples& ignored, int threads)
    : plane_(plane),
      shape_(shape),
      ignored_(ignored),
      threads_(threads),
      blocks_(std::max<std::int64_t>(shape.height / rowsOfBlock, 1)) {
  const std::vector<bool> none(static_cast<std::size_t>(shape.width), false);
  for (std::int64_t x = 0; x < shape.width; ++x)
    nearest_.push_back(nearest(x, none));
  references_ = nearest_;
  measureSpread();
  measureBlocks();
  firstMeans_ = means_;
}

void ColumnProfiles::measureSpread() {
  std::vector<Histogram> histograms(static_cast<std::size_t>(bandCount(shape_.height, threads_)));
  forEachBand(shape_.height, threads_, [&](const RowBand& band) {
    MirroredRows rows(plane_, shape_);
    std::vector<std::int16_t> residuals(static_cast<std::size_t>(shape_.width));
    for (std::int64_t y = band.first; y < band.last; ++y) {
      rows.lineResiduals(y, residuals.data());
      histograms[static_cast<std::size_t>(band.index)].add(residuals);
    }
  });
  for (std::size_t i = 1; i < histograms.size(); ++i)
    histograms[0].join(histograms[i]);
  bound_ = static_cast<std::int16_t>(std::clamp(clipSigma * histograms[0].spread().sigma, 1.0, 32000.0));
}

void ColumnProfiles::measureBlocks() {
  means_.resize(static_cast<std::size_t>(blocks_ * shape_.width));
  common_.resize(static_cast<std::size_t>(blocks_));
  forEachBand(blocks_, threads_, [&](const RowBand& band) {
    MirroredRows rows(plane_, shape_);
    std::vector<std::int16_t> residuals(static_cast<std::size_t>(shape_.width));
    for (std::int64_t block = band.first; block < band.last; ++block)
      measureBlock(block, rows, residuals);
  });
}

void ColumnProfiles::measureBlock(std::int64_t block, MirroredRows& rows, std::vector<std::int16_t>& residuals) {
  std::vector<std::int32_t> sums(static_cast<std::size_t>(shape_.width), 0);
  for (std::int64_t y = firstRow(block); y < firstRow(block + 1); ++y) {
    rows.lineResiduals(y, residuals.data());
    if (const std::uint8_t* ignored = ignored_ ? ignored_(y) : nullptr) {
      for (std::size_t x = 0; x < residuals.size(); ++x)
        residuals[x] = static_cast<std::int16_t>(ignored[x] != 0 ? 0 : residuals[x]);
    }
    addClipped(residuals.data(), bound_, shape_.width, sums.data());
  }
  const auto count = static_cast<float>(firstRow(block + 1) - firstRow(block));
  float* means = means_.data() + block * shape_.width;
  for (std::int64_t x = 0; x < shape_.width; ++x)
    means[x] = static_cast<float>(sums[static_cast<std::size_t>(x)]) / count;
  std::vector<float> copy(means, means + shape_.width);
  const float common = medianOf(copy);
  common_[static_cast<std::size_t>(block)] = common;
  for (std::int64_t x = 0; x < shape_.width; ++x)
    means[x] -= common;
}

// Three on either side; where a side has fewer, the other gives more.
ColumnProfiles::References ColumnProfiles::nearest(std::int64_t x, const std::vector<bool>& excluded) const {
  std::vector<std::int64_t> left;
  std::vector<std::int64_t> right;
  const auto collect = [&](std::vector<std::int64_t>& side, std::int64_t step) {
    for (std::int64_t column = x + step; column >= 0 && column < shape_.width && side.size() < 6; column += step)
      if (!excluded[static_cast<std::size_t>(column)]) side.push_back(column);
  };
  collect(left, -shape_.step);
  collect(right, shape_.step);
  const std::size_t fromLeft =
      std::min(left.size(), std::max<std::size_t>(6 - std::min<std::size_t>(right.size(), 3), 3));
  References references{};
  std::size_t count = 0;
  for (std::size_t i = 0; i < fromLeft && count < 6; ++i)
    references[count++] = left[i];
  for (std::size_t i = 0; i < right.size() && count < 6; ++i)
    references[count++] = right[i];
  for (; count < 6; ++count)  // hardly a column is left: the column itself says nothing
    references[count] = x;
  return references;
}

std::vector<std::int64_t> ColumnProfiles::exclude(const std::vector<std::int64_t>& columns) {
  std::vector<bool> excluded(static_cast<std::size_t>(shape_.width), false);
  for (const std::int64_t column : columns)
    excluded[static_cast<std::size_t>(column)] = true;
  std::vector<std::int64_t> changed;
  for (std::int64_t x = 0; x < shape_.width; ++x) {
    const auto i = static_cast<std::size_t>(x);
    references_[i] = nearest(x, excluded);
    if (references_[i] != nearest_[i]) changed.push_back(x);
  }
  means_ = firstMeans_;
  remeasure(changed);
  return changed;
}

void ColumnProfiles::remeasure(const std::vector<std::int64_t>& columns) {
  forEachBand(blocks_, threads_, [&](const RowBand& band) {
    for (std::int64_t block = band.first; block < band.last; ++block) {
      std::vector<std::int64_t> sums(columns.size(), 0);
      for (std::int64_t y = firstRow(block); y < firstRow(block + 1); ++y) {
        for (std::size_t i = 0; i < columns.size(); ++i)
          sums[i] += clippedResidual(columns[i], y);
      }
      const auto count = static_cast<float>(firstRow(block + 1) - firstRow(block));
      for (std::size_t i = 0; i < columns.size(); ++i) {
        means_[static_cast<std::size_t>(block * shape_.width + columns[i])] =
            static_cast<float>(sums[i]) / count - common_[static_cast<std::size_t>(block)];
      }
    }
  });
}

int ColumnProfiles::clippedResidual(std::int64_t x, std::int64_t y) const {
  if (const std::uint8_t* ignored = ignored_ ? ignored_(y) : nullptr; ignored != nullptr && ignored[x] != 0) return 0;
  const std::int16_t* row = plane_.data() + y * shape_.width;
  const References& columns = references_[static_cast<std::size_t>(x)];
  int values[6];
  for (std::size_t i = 0; i < 6; ++i)
    values[i] = row[columns[i]];
  return std::clamp<int>(row[x] - medianOfSix(values), -bound_, bound_);
}

double ColumnProfiles::residual(std::int64_t x, std::int64_t y) const {
  std::int64_t block = std::min(y * blocks_ / shape_.height, blocks_ - 1);
  while (block + 1 < blocks_ && firstRow(block + 1) <= y)
    ++block;
  return clippedResidual(x, y) - static_cast<double>(common_[static_cast<std::size_t>(block)]);
}

}  // namespace tessaly::second
