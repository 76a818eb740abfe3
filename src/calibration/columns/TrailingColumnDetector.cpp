#include "calibration/columns/TrailingColumnDetector.h"

#include "calibration/CalibrationSentences.h"
#include "calibration/columns/OrderStatistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <optional>
#include <string>

namespace tessaly {
namespace TrailingColumnDetector {
namespace {

using Frames = std::vector<const TrailFrameEvidence*>;

constexpr std::size_t leastGroupFrames = 3;
constexpr std::size_t leastGroups = 2;
constexpr double leastMajority = 0.8;  // of the groups that count

/// What one exposure group says about one seed.
struct GroupResult {
  double effect = 0;
  double agreement = 0;
};

std::vector<Frames> exposureGroups(std::span<const TrailFrameEvidence> frames) {
  std::map<std::string, Frames> byKey;
  for (const TrailFrameEvidence& frame : frames)
    byKey[frame.exposureKey].push_back(&frame);
  std::vector<Frames> groups;
  for (auto& [key, group] : byKey) {
    if (group.size() >= leastGroupFrames) groups.push_back(std::move(group));
  }
  return groups;
}

GroupResult groupResult(const Frames& group, std::size_t seed) {
  std::vector<double> values;
  for (const TrailFrameEvidence* frame : group)
    values.push_back(frame->values[seed]);
  const auto count = static_cast<std::ptrdiff_t>(values.size());
  const auto positives = std::count_if(values.begin(), values.end(), [](double value) { return value > 0; });
  return {upperMedian(values),
          static_cast<double>(std::max(positives, count - positives)) / static_cast<double>(count)};
}

std::vector<GroupResult> countingGroups(const std::vector<Frames>& groups, std::size_t seed, double leastEffect) {
  std::vector<GroupResult> counting;
  for (const Frames& group : groups) {
    const GroupResult result = groupResult(group, seed);
    if (std::abs(result.effect) >= leastEffect && result.agreement >= minimumAgreement) counting.push_back(result);
  }
  return counting;
}

// The groups of the sign that most have; nothing when they are too few.
std::vector<GroupResult> majority(std::vector<GroupResult> counting) {
  const std::size_t total = counting.size();
  const auto negatives = std::stable_partition(counting.begin(), counting.end(),
                                               [](const GroupResult& group) { return group.effect > 0; });
  if (negatives - counting.begin() >= counting.end() - negatives) {
    counting.erase(negatives, counting.end());
  } else {
    counting.erase(counting.begin(), negatives);
  }
  const double share = static_cast<double>(counting.size()) / static_cast<double>(total);
  if (counting.size() < leastGroups || share < leastMajority) counting.clear();
  return counting;
}

std::optional<TrailDetection> detection(const TrailSeed& seed, const std::vector<GroupResult>& groups) {
  if (groups.empty()) return std::nullopt;
  std::vector<double> effects;
  double agreement = 1;
  for (const GroupResult& group : groups) {
    effects.push_back(group.effect);
    agreement = std::min(agreement, group.agreement);
  }
  return TrailDetection{seed, upperMedian(effects), agreement, static_cast<std::int64_t>(groups.size())};
}

bool isStronger(const TrailDetection& left, const TrailDetection& right) {
  if (std::abs(left.effect) != std::abs(right.effect)) return std::abs(left.effect) > std::abs(right.effect);
  return left.seed < right.seed;
}

}  // namespace

std::vector<TrailDetection> detect(std::span<const TrailSeed> seeds, std::span<const TrailFrameEvidence> frames,
                                   double leastEffect) {
  const bool isConsistent = std::all_of(frames.begin(), frames.end(), [&](const TrailFrameEvidence& frame) {
    return frame.values.size() == seeds.size();
  });
  const std::vector<Frames> groups = exposureGroups(frames);
  if (!isConsistent || groups.size() < leastGroups) return {};
  std::vector<TrailDetection> detections;
  for (std::size_t seed = 0; seed < seeds.size(); ++seed) {
    const auto found = detection(seeds[seed], majority(countingGroups(groups, seed, leastEffect)));
    if (found) detections.push_back(*found);
  }
  std::stable_sort(detections.begin(), detections.end(), isStronger);
  return detections;
}

}  // namespace TrailingColumnDetector

namespace CalibrationEngine {
namespace {

CalibrationCandidate candidate(const TrailDetection& detection, const DNGMetadata& metadata) {
  CalibrationCandidate line;
  line.id = UUID::random();
  line.kind = CalibrationCandidate::Kind::line;
  line.x = detection.seed.x;
  line.yStart = detection.seed.y;
  line.yEnd = metadata.activeY + metadata.activeHeight - 1;
  line.confidence = std::min(std::abs(detection.effect) / 30 + 0.62, 0.99);
  line.frameAgreement = detection.agreement;
  line.exposureGroupCount = detection.exposureGroupCount;
  line.reason = CandidateReasons::partialColumn(detection.effect, detection.exposureGroupCount);
  return line;
}

}  // namespace

std::vector<CalibrationCandidate> trailCandidates(std::span<const TrailDetection> detections,
                                                  const DNGMetadata& metadata) {
  std::vector<CalibrationCandidate> lines;
  for (const TrailDetection& detection : detections)
    lines.push_back(candidate(detection, metadata));
  return lines;
}

}  // namespace CalibrationEngine
}  // namespace tessaly
