#include "calibration/CandidateMerging.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <tuple>
#include <utility>

namespace tessaly::CalibrationEngine {
namespace {

using Kind = CalibrationCandidate::Kind;

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
  pixel.kind = Kind::pixel;
  pixel.x = repetition.best->x;
  pixel.yStart = repetition.best->yStart;
  pixel.yEnd = repetition.best->yEnd;
  const auto repeated = static_cast<double>(repetition.groups - 1);
  pixel.confidence = std::min(repetition.best->confidence + confidencePerGroup * repeated, greatestConfidence);
  pixel.reason = fmt::format("Repeated in {} independent exposure groups", repetition.groups);
  return pixel;
}

int rank(Kind kind) {
  if (kind == Kind::line) return 0;
  return kind == Kind::spot ? 1 : 2;
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
    return std::tuple(rank(candidate.kind), -candidate.confidence, candidate.x, candidate.yStart);
  };
  std::stable_sort(candidates.begin(), candidates.end(),
                   [&key](const auto& left, const auto& right) { return key(left) < key(right); });
}

}  // namespace tessaly::CalibrationEngine
