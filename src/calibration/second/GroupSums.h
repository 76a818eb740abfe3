// What all groups say together about each sample: weighted means of what is fixed, and the sums from which unsteady
// photosites are found. Only these are kept as planes, whatever the number of groups.
#pragma once

#include "calibration/second/GroupStack.h"

#include <vector>

namespace tessaly::second {

/// A mean of planes, weighted by group, where the groups vote.
class MeanPlane {
 public:
  MeanPlane(const BlockGrid& grid, int threads);

  void add(const GroupModel& model, const Plane& values);

  [[nodiscard]] const Plane& values() const { return values_; }
  [[nodiscard]] Plane& values() { return values_; }
  /// Columns of a row in which any group voted.
  [[nodiscard]] std::span<const ColumnRange> known(std::int64_t y) const;
  [[nodiscard]] bool isEmpty() const { return groups_ == 0; }

 private:
  const BlockGrid& grid_;
  int threads_;
  int groups_ = 0;
  Plane values_;
  std::vector<double> weights_;                  ///< by block
  std::vector<std::vector<ColumnRange>> known_;  ///< by block row
};

/// Adds the departures of a dark group, in 1/16 of their standard deviation.
void addWarmth(const GroupModel& model, const Plane& median, const PlaneShape& shape, int threads, Plane& sums);

/// Normal scores of the variance: their sum over groups, and how much of one group a single frame accounts for.
struct UnsteadySums {
  Plane sums;
  Plane worst;
  int groups = 0;

  void add(const GroupModel& model, GroupStack& stack, const BlockGrid& grid, int threads);
};

}  // namespace tessaly::second
