// How far columns depart from the columns beside them, in blocks of rows.
//
// b = sample − median of six samples of the same phase beside it in its row, clipped to ±4 σ(b); means of 16 rows; each
// block row's median over the columns taken off. The six are the nearest columns on either side that are not known to
// be defective themselves.
#pragma once

#include "calibration/second/Neighbourhood.h"
#include "calibration/second/Planes.h"

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace tessaly::second {

/// Which samples of a row do not count, one byte a column, or nothing where all do.
using IgnoredSamples = std::function<const std::uint8_t*(std::int64_t y)>;

class ColumnProfiles {
 public:
  /// All must outlive the profiles.
  ColumnProfiles(const Plane& plane, const PlaneShape& shape, const IgnoredSamples& ignored, int threads);

  [[nodiscard]] std::int64_t blocks() const { return blocks_; }
  [[nodiscard]] std::int64_t firstRow(std::int64_t block) const { return shape_.height * block / blocks_; }
  [[nodiscard]] const PlaneShape& shape() const { return shape_; }

  /// The means of a block row, one a column.
  [[nodiscard]] const float* blockRow(std::int64_t block) const { return means_.data() + block * shape_.width; }

  /// Makes these columns references of no other; returns the columns whose references are not the nearest ones.
  std::vector<std::int64_t> exclude(const std::vector<std::int64_t>& columns);

  /// The clipped residual of one sample, less what its block row has in common.
  [[nodiscard]] double residual(std::int64_t x, std::int64_t y) const;

 private:
  using References = std::array<std::int64_t, 6>;

  void measureSpread();
  void measureBlocks();
  void measureBlock(std::int64_t block, MirroredRows& rows, std::vector<std::int16_t>& residuals);
  void remeasure(const std::vector<std::int64_t>& columns);
  [[nodiscard]] References nearest(std::int64_t x, const std::vector<bool>& excluded) const;
  [[nodiscard]] int clippedResidual(std::int64_t x, std::int64_t y) const;

  const Plane& plane_;
  PlaneShape shape_;
  const IgnoredSamples& ignored_;
  int threads_;
  std::int64_t blocks_;
  std::int16_t bound_ = 0;
  std::vector<float> common_;  ///< by block: the median over columns
  std::vector<float> means_;
  std::vector<float> firstMeans_;  ///< with the nearest references
  std::vector<References> references_;
  std::vector<References> nearest_;
};

}  // namespace tessaly::second
