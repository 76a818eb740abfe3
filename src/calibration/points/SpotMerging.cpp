#include "calibration/points/SpotMerging.h"

#include "calibration/CalibrationSentences.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace tessaly::CalibrationEngine {
namespace {

using Cluster = std::vector<const CalibrationCandidate*>;

constexpr std::int64_t leastDistance = 6;
constexpr double surestMergedSpot = 0.98;

bool isClose(const CalibrationCandidate& spot, const CalibrationCandidate& first) {
  return std::abs(spot.x - first.x) <= std::max(spot.radiusX + first.radiusX, leastDistance) &&
         std::abs(spot.yStart - first.yStart) <= std::max(spot.radiusY + first.radiusY, leastDistance);
}

std::vector<Cluster> clusters(const std::vector<CalibrationCandidate>& spots) {
  std::vector<Cluster> result;
  for (const CalibrationCandidate& spot : spots) {
    const auto joined = std::find_if(result.begin(), result.end(),
                                     [&](const Cluster& cluster) { return isClose(spot, *cluster.front()); });
    if (joined != result.end()) {
      joined->push_back(&spot);
    } else {
      result.push_back({&spot});
    }
  }
  return result;
}

std::int64_t meanOf(const Cluster& cluster, std::int64_t CalibrationCandidate::*coordinate) {
  std::int64_t sum = 0;
  for (const CalibrationCandidate* spot : cluster)
    sum += spot->*coordinate;
  return std::llround(static_cast<double>(sum) / static_cast<double>(cluster.size()));
}

// How far the members reach from the merged centre.
std::int64_t reach(const Cluster& cluster, std::int64_t centre, std::int64_t CalibrationCandidate::*coordinate,
                   std::int64_t CalibrationCandidate::*radius) {
  std::int64_t farthest = 0;
  for (const CalibrationCandidate* spot : cluster)
    farthest = std::max(farthest, std::abs(spot->*coordinate - centre) + spot->*radius);
  return farthest;
}

double meanConfidence(const Cluster& cluster) {
  double sum = 0;
  for (const CalibrationCandidate* spot : cluster)
    sum += spot->confidence;
  return sum / static_cast<double>(cluster.size());
}

CalibrationCandidate merged(const Cluster& cluster) {
  CalibrationCandidate spot;
  spot.id = UUID::random();
  spot.kind = CalibrationCandidate::Kind::spot;
  spot.x = meanOf(cluster, &CalibrationCandidate::x);
  spot.yStart = meanOf(cluster, &CalibrationCandidate::yStart);
  spot.yEnd = spot.yStart;
  spot.radiusX = reach(cluster, spot.x, &CalibrationCandidate::x, &CalibrationCandidate::radiusX);
  spot.radiusY = reach(cluster, spot.yStart, &CalibrationCandidate::yStart, &CalibrationCandidate::radiusY);
  spot.confidence = std::min(meanConfidence(cluster) + 0.04, surestMergedSpot);
  spot.reason = CandidateReasons::repeatedSpot(static_cast<std::int64_t>(cluster.size()));
  return spot;
}

}  // namespace

std::vector<CalibrationCandidate> mergeSpotCandidates(const std::vector<CalibrationCandidate>& spots) {
  std::vector<CalibrationCandidate> result;
  for (const Cluster& cluster : clusters(spots)) {
    if (cluster.size() > 1) result.push_back(merged(cluster));
  }
  return result;
}

}  // namespace tessaly::CalibrationEngine
