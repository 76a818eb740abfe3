#include "dng/copy/ChangedSamples.h"

#include <algorithm>

namespace tessaly {

// The first run that holds a sample at or behind this place in row-major order.
ChangedSamples::Position ChangedSamples::firstEndingBehind(std::int64_t row, std::int64_t column) const {
  return std::partition_point(runs_->begin(), runs_->end(), [&](const SampleRun& run) {
    return run.row < row || (run.row == row && run.column + run.count <= column);
  });
}

std::optional<std::int64_t> ChangedSamples::nextRow(const Segment& segment, std::int64_t row) const {
  const std::int64_t end = segment.y + segment.rows;
  while (runs_ && row < end) {
    const Position next = firstEndingBehind(row, segment.x);
    if (next == runs_->end()) return std::nullopt;
    const bool isInSegment = next->row == row && next->column < segment.x + segment.columns;
    if (isInSegment) return row;
    row = std::max(next->row, row + 1);
  }
  return row < end ? std::optional(row) : std::nullopt;
}

void ChangedSamples::forEachRun(const Segment& segment, std::int64_t row,
                                const std::function<void(const SampleRun&)>& visit) const {
  const std::int64_t endColumn = segment.x + segment.columns;
  if (all()) return visit({row, segment.x, segment.columns});
  for (Position run = firstEndingBehind(row, segment.x); run != runs_->end() && run->row == row; ++run) {
    if (run->column >= endColumn) break;
    const std::int64_t first = std::max(run->column, segment.x);
    visit({row, first, std::min(run->column + run->count, endColumn) - first});
  }
}

}  // namespace tessaly
