// The places of a plane that are looked at once more: runs of columns, row by row.
#pragma once

#include "calibration/second/Planes.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessaly::second {

class Places {
 public:
  explicit Places(const PlaneShape& shape) : shape_(shape), rows_(static_cast<std::size_t>(shape.height)) {}

  /// Every sample.
  [[nodiscard]] static Places everything(const PlaneShape& shape);

  /// Adds the part of a rectangle that lies in the plane; both ends included.
  void add(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom);

  /// Joins what overlaps; to be called once, after the last rectangle.
  void join();

  /// From left to right, without overlaps.
  [[nodiscard]] std::span<const ColumnRange> row(std::int64_t y) const { return rows_[static_cast<std::size_t>(y)]; }

 private:
  PlaneShape shape_;
  std::vector<std::vector<ColumnRange>> rows_;
};

}  // namespace tessaly::second
