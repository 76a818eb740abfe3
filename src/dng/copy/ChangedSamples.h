// Which samples of a raw plane may differ from the source's: runs of adjacent samples, or all of them.
//
// A view of runs that it does not own; immutable, safe to share between threads.
#pragma once

#include "dng/RawPlane.h"
#include "dng/samples/SegmentLayout.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace tessaly {

class ChangedSamples {
 public:
  /// Every sample may differ.
  ChangedSamples() = default;

  /// Only the samples of these runs may differ. The runs are disjoint and sorted by row, then by column; they lie in
  /// the plane and outlive this object.
  explicit ChangedSamples(std::span<const SampleRun> runs) : runs_(runs) {}

  [[nodiscard]] bool all() const { return !runs_; }

  /// The runs; not for all().
  [[nodiscard]] std::span<const SampleRun> runs() const { return *runs_; }

  /// The first raw row from `row` on in which the segment holds a changed sample; nothing when there is none.
  [[nodiscard]] std::optional<std::int64_t> nextRow(const Segment& segment, std::int64_t row) const;

  /// Visits, from left to right, the changed samples of one raw row that lie in the segment.
  void forEachRun(const Segment& segment, std::int64_t row, const std::function<void(const SampleRun&)>& visit) const;

 private:
  using Position = std::span<const SampleRun>::iterator;
  [[nodiscard]] Position firstEndingBehind(std::int64_t row, std::int64_t column) const;

  std::optional<std::span<const SampleRun>> runs_;
};

}  // namespace tessaly
