// Measures, below fixed pixels, how far the column departs from its neighbours.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "dng/RawPlane.h"

#include <compare>
#include <cstddef>
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

/// Which seeds measure which rows. Seeds whose rows have the same remainder share them.
class TrailRows {
 public:
  /// Of the seeds from `first` up to, but excluding, `last`.
  TrailRows(std::span<const TrailSeed> seeds, std::size_t first, std::size_t last, const DNGMetadata& metadata);

  /// The first raw row after all measured ones.
  [[nodiscard]] std::int64_t end() const { return end_; }

  /// Calls `visit` with the index of each seed that measures the raw row, from left to right.
  template <typename Visitor>
  void forEachSeed(std::int64_t row, Visitor visit) const {
    if (row >= end_) return;
    for (const Entry& entry : entries_[static_cast<std::size_t>(row) % entries_.size()]) {
      if (row >= entry.firstRow) visit(entry.seed);
    }
  }

 private:
  struct Entry {
    std::size_t seed = 0;
    std::int64_t firstRow = 0;
  };

  std::int64_t end_ = 0;
  std::vector<std::vector<Entry>> entries_;  ///< by remainder
};

/// The samples that the measurement looks at. Used by one thread; the seeds must outlive it.
class TrailSamples {
 public:
  TrailSamples(std::span<const TrailSeed> seeds, const DNGMetadata& metadata);

  /// Those of a raw row: runs that do not overlap, from left to right. Valid until the next call.
  [[nodiscard]] std::span<const SampleRun> ofRow(std::int64_t row);

 private:
  void add(const SampleRun& run);

  std::span<const TrailSeed> seeds_;
  TrailRows rows_;
  std::int64_t reach_;  ///< columns on either side of a seed
  std::vector<SampleRun> runs_;
};

}  // namespace CalibrationEngine
}  // namespace tessaly
