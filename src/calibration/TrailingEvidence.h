// Measures, below fixed pixels, how far the column departs from its neighbours.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "dng/RawPlane.h"

#include <compare>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tessaly {

/// A fixed pixel that may be the head of a partial column, in raw coordinates. Ordered by x, then y.
struct TrailSeed {
  std::int64_t x = 0;
  std::int64_t y = 0;

  auto operator<=>(const TrailSeed&) const = default;
};

struct TrailFrameEvidence {
  std::string exposureKey;     ///< of the frame's exposure group
  std::vector<double> values;  ///< column offset below each seed, in the order of the seeds

  bool operator==(const TrailFrameEvidence&) const = default;
};

namespace CalibrationEngine {

/// The topmost pixel of each column that has one, sorted; columns too near to the left or right border and pixels too
/// near to the bottom are left out.
[[nodiscard]] std::vector<TrailSeed> trailSeeds(std::span<const CalibrationCandidate> pixels,
                                                const DNGMetadata& metadata);

/// Measures a frame, given as its full raw plane, on up to `threads` threads. `raw` need only hold the samples of
/// TrailSamples.
[[nodiscard]] TrailFrameEvidence trailFrameEvidence(std::span<const std::uint16_t> raw, std::string exposureKey,
                                                    std::span<const TrailSeed> seeds, const DNGMetadata& metadata,
                                                    int threads);

/// The samples that the measurement looks at. Used by one thread.
class TrailSamples {
 public:
  TrailSamples(std::span<const TrailSeed> seeds, const DNGMetadata& metadata);

  /// Those of a raw row: runs that do not overlap, from left to right. Valid until the next call.
  [[nodiscard]] std::span<const SampleRun> ofRow(std::int64_t row);

 private:
  void add(const SampleRun& run);

  const DNGMetadata& metadata_;
  std::int64_t reach_;                         ///< columns on either side of a seed
  std::vector<std::vector<TrailSeed>> seeds_;  ///< by the remainder of the rows that they share
  std::vector<SampleRun> runs_;
};

}  // namespace CalibrationEngine
}  // namespace tessaly
