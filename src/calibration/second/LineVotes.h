// What the groups say about found columns and shadows, after their frames were looked at once more.
#pragma once

#include "calibration/second/GroupStack.h"
#include "calibration/second/LineFinder.h"
#include "calibration/second/ShadowFinder.h"

#include <vector>

namespace tessaly::second {

/// A found column stays when its mean has the same sign in at least three of four groups and is at least a tenth of the
/// least noise of a group.
class LineVotes {
 public:
  explicit LineVotes(std::vector<FoundColumn>& columns)
      : columns_(columns), agreeing_(columns.size(), 0), voting_(columns.size(), 0) {}

  void add(const GroupModel& model, const Plane& median, const BlockGrid& grid);
  void finish();

 private:
  std::vector<FoundColumn>& columns_;
  std::vector<int> agreeing_;
  std::vector<int> voting_;
  double leastNoise_ = 0;
};

/// A shadow stays when more than 60 % of the groups that are not clipped there see more than 0.4 of its depth.
class ShadowVotes {
 public:
  explicit ShadowVotes(std::vector<Shadow>& shadows)
      : shadows_(shadows), agreeing_(shadows.size(), 0), voting_(shadows.size(), 0) {}

  void add(const GroupModel& model, const Plane& median, const BlockGrid& grid);
  void finish();

 private:
  std::vector<Shadow>& shadows_;
  std::vector<int> agreeing_;
  std::vector<int> voting_;
};

}  // namespace tessaly::second
