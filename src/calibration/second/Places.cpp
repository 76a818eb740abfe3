#include "calibration/second/Places.h"

#include <algorithm>

namespace tessaly::second {
namespace {

void joinRow(std::vector<ColumnRange>& row) {
  std::sort(row.begin(), row.end(), [](const auto& left, const auto& right) { return left.first < right.first; });
  std::vector<ColumnRange> joined;
  for (const ColumnRange& range : row) {
    if (!joined.empty() && range.first <= joined.back().last) {
      joined.back().last = std::max(joined.back().last, range.last);
    } else {
      joined.push_back(range);
    }
  }
  row = std::move(joined);
}

}  // namespace

Places Places::everything(const PlaneShape& shape) {
  Places places(shape);
  for (std::vector<ColumnRange>& row : places.rows_)
    row = {{0, shape.width}};
  return places;
}

void Places::add(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom) {
  const ColumnRange range{std::max<std::int64_t>(left, 0), std::min(right + 1, shape_.width)};
  if (range.first >= range.last) return;
  for (std::int64_t y = std::max<std::int64_t>(top, 0); y <= std::min(bottom, shape_.height - 1); ++y)
    rows_[static_cast<std::size_t>(y)].push_back(range);
}

void Places::join() {
  for (std::vector<ColumnRange>& row : rows_)
    joinRow(row);
}

}  // namespace tessaly::second
