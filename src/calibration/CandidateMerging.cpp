#include "calibration/CandidateMerging.h"

#include "calibration/CalibrationSentences.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <tuple>
#include <utility>

namespace tessaly::CalibrationEngine {
namespace {

constexpr std::size_t leastGroups = 2;
constexpr double confidencePerGroup = 0.03;
constexpr double greatestConfidence = 0.99;

/// What the groups found at one position.
struct Repetition {
  const CalibrationCandidate* best = nullptr;
  std::size_t groups = 0;

  void add(const CalibrationCandidate& pixel) {
    ++groups;
    if (best == nullptr || pixel.confidence > best->confidence) best = &pixel;
  }
};

CalibrationCandidate merged(const Repetition& repetition) {
  CalibrationCandidate pixel;
  pixel.id = UUID::random();
  pixel.kind = CandidateKind::pixel;
  pixel.x = repetition.best->x;
  pixel.yStart = repetition.best->yStart;
  pixel.yEnd = repetition.best->yEnd;
  const auto repeated = static_cast<double>(repetition.groups - 1);
  pixel.confidence = std::min(repetition.best->confidence + confidencePerGroup * repeated, greatestConfidence);
  pixel.reason = CandidateReasons::repeatedPixel(static_cast<std::int64_t>(repetition.groups));
  return pixel;
}

}  // namespace

std::vector<CalibrationCandidate> mergePixels(std::span<const CalibrationCandidate> pixels) {
  std::map<std::pair<std::int64_t, std::int64_t>, Repetition> positions;
  for (const CalibrationCandidate& pixel : pixels)
    positions[{pixel.yStart, pixel.x}].add(pixel);
  std::vector<CalibrationCandidate> result;
  for (const auto& [position, repetition] : positions) {
    if (repetition.groups >= leastGroups) result.push_back(merged(repetition));
  }
  return result;
}

void orderCandidates(std::vector<CalibrationCandidate>& candidates) {
  const auto key = [](const CalibrationCandidate& candidate) {
    return std::tuple(reportRank(candidate.kind), -candidate.confidence, candidate.x, candidate.yStart);
  };
  std::stable_sort(candidates.begin(), candidates.end(),
                   [&key](const auto& left, const auto& right) { return key(left) < key(right); });
}

}  // namespace tessaly::CalibrationEngine
