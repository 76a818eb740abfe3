// The large-scale model of a plane: what it would be without detail. Medians of blocks of each colour phase,
// interpolated linearly between the centres of blocks and continued linearly to the borders.
#pragma once

#include "calibration/second/Planes.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessaly::second {

/// How a plane is cut into blocks: as many of about `side` samples of a phase as fit, at least one each way.
class BlockGrid {
 public:
  BlockGrid(const PlaneShape& shape, std::int64_t side);

  [[nodiscard]] const PlaneShape& shape() const { return shape_; }
  [[nodiscard]] std::int64_t columns() const { return columns_; }
  [[nodiscard]] std::int64_t rows() const { return rows_; }
  [[nodiscard]] std::size_t blocks() const { return static_cast<std::size_t>(columns_ * rows_); }
  /// One value a block and phase: phase after phase, block row after block row.
  [[nodiscard]] std::size_t values() const { return blocks() * static_cast<std::size_t>(shape_.step * shape_.step); }

  /// The samples of a phase along an axis.
  [[nodiscard]] std::int64_t phaseLength(std::int64_t length, std::int64_t phase) const {
    return (length - phase + shape_.step - 1) / shape_.step;
  }
  /// The first sample of a block, `count` of which share `length` samples.
  [[nodiscard]] static std::int64_t edge(std::int64_t length, std::int64_t block, std::int64_t count) {
    return length * block / count;
  }
  /// The block row of a row of the plane, and the columns of the plane that belong to a block column.
  [[nodiscard]] std::int64_t blockRow(std::int64_t y) const;
  [[nodiscard]] ColumnRange blockColumns(std::int64_t column) const;

 private:
  PlaneShape shape_;
  std::int64_t columns_;
  std::int64_t rows_;
};

using BlockValues = std::vector<float>;

/// Unsigned samples in rows that lie `stride` apart.
struct SampleView {
  const std::uint16_t* origin = nullptr;
  std::int64_t stride = 0;
};

/// The median of each block; values stand for the interval around them, so that it is finer than 1.
[[nodiscard]] BlockValues blockMedians(const SampleView& samples, const BlockGrid& grid, int threads);

/// Such a median of values, which are put in no other order; 0 without any.
[[nodiscard]] float groupedMedian(std::span<const std::uint16_t> values);

/// Spreads block values over the rows of the plane. Keeps room for one row; each thread needs its own.
class ModelRows {
 public:
  ModelRows(const BlockGrid& grid, std::span<const float> values);

  /// The model of row y, `width` values; valid until the next call.
  [[nodiscard]] const float* row(std::int64_t y);

 private:
  void expand(std::int64_t phaseX, std::int64_t phaseY, std::int64_t phaseRow);

  const BlockGrid& grid_;
  std::span<const float> values_;
  std::vector<float> line_;                 ///< one block row, interpolated
  std::vector<std::vector<float>> phases_;  ///< the row, by phase
  std::vector<float> row_;
};

/// The model at one sample.
[[nodiscard]] float modelAt(const BlockGrid& grid, std::span<const float> values, std::int64_t x, std::int64_t y);

}  // namespace tessaly::second
