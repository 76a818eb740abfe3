// Single photosites that stand out of a whole sensor: weakly dim or bright ones in light, warm ones in the dark, and
// unsteady ones, whose noise is larger than that of their surroundings.
//
// These functions propose by the statistics of all groups together; the groups vote afterwards (PointVotes).
#pragma once

#include "calibration/second/GroupSums.h"
#include "calibration/second/Neighbourhood.h"

#include <cstdint>
#include <vector>

namespace tessaly::second {

struct PointPlace {
  std::int64_t x = 0;
  std::int64_t y = 0;
  double evidence = 0;  ///< robust standard deviations of the statistic over the sensor
  double effect = 0;    ///< dim: share of the light, signed; warm: u; unsteady: ratio of noise

  bool operator==(const PointPlace&) const = default;
};

using PointPlaces = std::vector<PointPlace>;

inline constexpr double pointThreshold = 7;

/// |D| > 7 σ(D) and > 3 % of the light, D being the departure of the mean over bright groups.
[[nodiscard]] PointPlaces dimPlaces(const Plane& light, const PlaneShape& shape, const CountedColumns& counted,
                                    int threads);

/// Where the standardised sum of departures over dark groups is above 7.
[[nodiscard]] PointPlaces warmPlaces(const Plane& warmth, const PlaneShape& shape, int threads);

/// Where U = Σ z(V) − max (z(V) − z(T)), standardised, is above 7 over the dark groups, the bright ones, or all.
[[nodiscard]] PointPlaces unsteadyPlaces(const UnsteadySums& dark, const UnsteadySums& bright, const PlaneShape& shape,
                                         int threads);

/// What one group says about places, after its frames were looked at once more.
class PointVotes {
 public:
  PointVotes(const BlockGrid& grid, PointPlaces& dim, PointPlaces& warm, PointPlaces& unsteady);

  void add(const GroupModel& model, GroupStack& stack);
  /// Drops what the groups did not vote for.
  void finish();

 private:
  struct WarmVote {
    int groups = 0;       ///< in which z > 3
    bool isLoud = false;  ///< d > 3 n in one
    double most = 0;      ///< u
  };

  void voteDim(const GroupModel& model, const Plane& median);
  void voteWarm(const GroupModel& model, const Plane& median);
  void voteUnsteady(const GroupModel& model, const Plane& trimmedRoots);

  const BlockGrid& grid_;
  PointPlaces& dim_;
  PointPlaces& warm_;
  PointPlaces& unsteady_;
  int darkGroups_ = 0;
  std::vector<bool> dimDenied_;
  std::vector<WarmVote> warmVotes_;
};

}  // namespace tessaly::second
