#include "calibration/points/SpotSearch.h"

#include "calibration/MosaicSteps.h"
#include "calibration/points/Anomalies.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace tessaly {
namespace {

constexpr std::size_t leastMembers = 4;
constexpr std::size_t mostMembers = 600;
constexpr std::int64_t mostSamplesAcross = 40;
constexpr std::int64_t leastRadius = 4;
constexpr double surestSpot = 0.95;

/// A darkened photosite.
struct Member {
  std::int64_t index = 0;
  double mean = 0;  // negative
  double agreement = 0;
};

struct Bounds {
  std::int64_t minX = std::numeric_limits<std::int64_t>::max();
  std::int64_t maxX = std::numeric_limits<std::int64_t>::min();
  std::int64_t minY = std::numeric_limits<std::int64_t>::max();
  std::int64_t maxY = std::numeric_limits<std::int64_t>::min();

  void include(std::int64_t x, std::int64_t y) {
    minX = std::min(minX, x);
    maxX = std::max(maxX, x);
    minY = std::min(minY, y);
    maxY = std::max(maxY, y);
  }

  [[nodiscard]] bool fitsASpot() const {
    return maxX - minX + 1 <= mostSamplesAcross && maxY - minY + 1 <= mostSamplesAcross;
  }
};

/// The members of a cluster as long as it can still be a spot; of a larger one only that it is too large.
struct Cluster {
  Bounds bounds;
  std::vector<Member> members;
  bool isTooLarge = false;

  void include(const Member& member, std::int64_t width) {
    if (isTooLarge) return;
    bounds.include(member.index % width, member.index / width);
    members.push_back(member);
    isTooLarge = members.size() > mostMembers || !bounds.fitsASpot();
  }

  [[nodiscard]] bool isSpot() const { return !isTooLarge && members.size() >= leastMembers; }
};

std::int64_t radius(std::int64_t least, std::int64_t greatest) {
  return std::max((greatest - least + 6) / 2, leastRadius);
}

class SpotSearch {
 public:
  explicit SpotSearch(DeviationMap& map)
      : map_(map), thresholds_(anomalyThresholds(map)), reach_(stepsOf(map.metadata()).shadowReach) {}

  PointFindings search() {
    PointFindings findings;
    forEachAnomaly(map_, thresholds_, {0, 0, measuredRows(map_)}, [&](std::int64_t index) {
      Cluster cluster = takeCluster(index);
      if (cluster.isSpot()) findings.add(finding(cluster));
    });
    return findings;
  }

 private:
  [[nodiscard]] bool isDarkAnomaly(std::int64_t index) const {
    return map_.mean(index) < 0 && isAnomaly(map_, thresholds_, index);
  }

  // Breadth first, so that no more is remembered than the front of the cluster, whatever its size.
  Cluster takeCluster(std::int64_t first) {
    Cluster cluster;
    std::vector<std::int64_t> front;
    std::vector<std::int64_t> next;
    take(first, cluster, next);
    while (!next.empty()) {
      front.swap(next);
      next.clear();
      for (const std::int64_t index : front)
        takeNeighbours(index, cluster, next);
    }
    return cluster;
  }

  // Anomalies keep the margin of the map, which is as wide as the reach, to the border: no index leaves its row.
  void takeNeighbours(std::int64_t index, Cluster& cluster, std::vector<std::int64_t>& next) {
    for (std::int64_t dy = -reach_; dy <= reach_; ++dy) {
      for (std::int64_t dx = -reach_; dx <= reach_; ++dx)
        take(index + dy * map_.width() + dx, cluster, next);
    }
  }

  void take(std::int64_t index, Cluster& cluster, std::vector<std::int64_t>& next) {
    if (!isDarkAnomaly(index)) return;
    const auto agreeing = static_cast<double>(map_.agreeingFrames(index));
    cluster.include({index, map_.mean(index), agreeing / static_cast<double>(map_.frameCount())}, map_.width());
    map_.erase(index);
    next.push_back(index);
  }

  // Sums run over the members row by row, whatever the order in which they were reached.
  PointFinding finding(Cluster& cluster) const {
    std::sort(cluster.members.begin(), cluster.members.end(),
              [](const Member& left, const Member& right) { return left.index < right.index; });
    double weight = 0;
    double weightedX = 0;
    double weightedY = 0;
    for (const Member& member : cluster.members) {
      weight += -member.mean;
      const std::int64_t x = member.index % map_.width();
      const std::int64_t y = member.index / map_.width();
      weightedX += -member.mean * static_cast<double>(x);
      weightedY += -member.mean * static_cast<double>(y);
    }
    const Bounds& bounds = cluster.bounds;
    return {CalibrationCandidate::Kind::spot,
            confidence(cluster.members),
            cluster.members.front().index,
            static_cast<std::int64_t>(weightedX / weight),
            static_cast<std::int64_t>(weightedY / weight),
            radius(bounds.minX, bounds.maxX),
            radius(bounds.minY, bounds.maxY)};
  }

  [[nodiscard]] double confidence(const std::vector<Member>& members) const {
    double agreements = 0;
    double peak = 0;
    for (const Member& member : members) {
      agreements += member.agreement;
      peak = std::min(peak, member.mean);
    }
    const double agreement = agreements / static_cast<double>(members.size());
    return std::min(agreement * 0.55 + std::min(std::abs(peak) / (5 * thresholds_.scale), 1.0) * 0.4, surestSpot);
  }

  DeviationMap& map_;
  AnomalyThresholds thresholds_;
  std::int64_t reach_;
};

}  // namespace

PointFindings findSpots(DeviationMap& map) {
  return SpotSearch(map).search();
}

}  // namespace tessaly
