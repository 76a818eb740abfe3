#include "app/preview/MarkerIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaly {
namespace {

using Kind = CalibrationCandidate::Kind;

// Small enough that a view at high zoom touches few of them, large enough that a whole sensor has some ten thousand.
constexpr double cellSize = 64;

double distanceToRange(double value, double first, double last) {
  return std::max({first - value, 0.0, value - last});
}

double distanceToArea(QPointF point, const QRectF& area) {
  return std::hypot(distanceToRange(point.x(), area.left(), area.right()),
                    distanceToRange(point.y(), area.top(), area.bottom()));
}

/// The distance to an ellipse's edge along the ray from its centre; 0 inside.
double distanceToEllipse(QPointF point, const QRectF& bounds) {
  const QPointF offset = point - bounds.center();
  const double relative = std::hypot(offset.x() / (bounds.width() / 2), offset.y() / (bounds.height() / 2));
  return relative <= 1 ? 0 : std::hypot(offset.x(), offset.y()) * (1 - 1 / relative);
}

/// Keeps the nearest of the markers it is shown.
class Nearest {
 public:
  explicit Nearest(double radius) : distance_(radius) {}

  void consider(int row, double distance) {
    if (distance > distance_ || (row_ && distance == distance_)) return;
    row_ = row;
    distance_ = distance;
  }

  [[nodiscard]] std::optional<int> row() const { return row_; }

 private:
  std::optional<int> row_;
  double distance_;
};

}  // namespace

QRectF coveredArea(const CalibrationCandidate& candidate, const DNGMetadata& metadata) {
  const auto x = static_cast<double>(candidate.x - metadata.activeX);
  const auto y = static_cast<double>(candidate.yStart - metadata.activeY);
  const auto rows = static_cast<double>(candidate.yEnd - candidate.yStart + 1);
  const auto radiusX = static_cast<double>(candidate.radiusX);
  const auto radiusY = static_cast<double>(candidate.radiusY);
  switch (candidate.kind) {
    case Kind::pixel:
    case Kind::line:
      return {x, y, static_cast<double>(candidate.width), rows};
    case Kind::spot:
      break;
  }
  return {x - radiusX, y - radiusY, 2 * radiusX + 1, 2 * radiusY + 1};
}

struct MarkerIndex::CellRange {
  std::int64_t left, right, top, bottom;
};

void MarkerIndex::rebuild(const CandidateStore& store) {
  *this = {};
  for (int row = 0; row < store.count(); ++row) {
    const CalibrationCandidate& candidate = store.at(row);
    switch (candidate.kind) {
      case Kind::line:
        lines_.push_back(row);
        break;
      case Kind::spot:
        spots_.push_back(row);
        break;
      case Kind::pixel:
        pixels_.push_back(row);
        positions_.push_back(coveredArea(candidate, store.metadata()).center());
        break;
    }
  }
  layOutCells(store.metadata());
  fillCells();
}

void MarkerIndex::layOutCells(const DNGMetadata& metadata) {
  const auto cells = [](std::int64_t samples) {
    return std::max<std::int64_t>(static_cast<std::int64_t>(std::ceil(static_cast<double>(samples) / cellSize)), 1);
  };
  columns_ = cells(metadata.activeWidth);
  rows_ = cells(metadata.activeHeight);
}

// Counts, then places: two passes instead of ten thousand small lists.
void MarkerIndex::fillCells() {
  cellStarts_.assign(static_cast<std::size_t>(columns_ * rows_) + 1, 0);
  for (const QPointF& position : positions_)
    ++cellStarts_[cellOf(position) + 1];
  for (std::size_t cell = 1; cell < cellStarts_.size(); ++cell)
    cellStarts_[cell] += cellStarts_[cell - 1];
  std::vector<std::size_t> next(cellStarts_.begin(), cellStarts_.end() - 1);
  inCells_.resize(positions_.size());
  for (std::size_t index = 0; index < positions_.size(); ++index)
    inCells_[next[cellOf(positions_[index])]++] = index;
}

std::size_t MarkerIndex::cellOf(QPointF sample) const {
  const CellRange cell = cellsOf({sample, QSizeF(0, 0)});
  return static_cast<std::size_t>(cell.top * columns_ + cell.left);
}

MarkerIndex::CellRange MarkerIndex::cellsOf(const QRectF& area) const {
  const auto cell = [](double sample, std::int64_t count) {
    const double last = static_cast<double>(count - 1);
    return static_cast<std::int64_t>(std::clamp(std::floor(sample / cellSize), 0.0, last));
  };
  return {cell(area.left(), columns_), cell(area.right(), columns_), cell(area.top(), rows_),
          cell(area.bottom(), rows_)};
}

std::vector<int> MarkerIndex::pixelsIn(const QRectF& area) const {
  std::vector<int> found;
  if (pixels_.empty()) return found;
  const QRectF centres = area.adjusted(-0.5, -0.5, 0.5, 0.5);
  const CellRange range = cellsOf(centres);
  for (std::int64_t y = range.top; y <= range.bottom; ++y) {
    const auto first = static_cast<std::size_t>(y * columns_ + range.left);
    const auto behind = static_cast<std::size_t>(y * columns_ + range.right) + 1;
    for (std::size_t index = cellStarts_[first]; index < cellStarts_[behind]; ++index) {
      const std::size_t pixel = inCells_[index];
      if (centres.contains(positions_[pixel])) found.push_back(pixels_[pixel]);
    }
  }
  return found;
}

std::optional<int> MarkerIndex::hit(const CandidateStore& store, QPointF sample, double radius) const {
  const QRectF around(sample.x() - radius, sample.y() - radius, 2 * radius, 2 * radius);
  Nearest pixel(radius);
  for (const int row : pixelsIn(around))
    pixel.consider(row, distanceToArea(sample, coveredArea(store.at(row), store.metadata())));
  if (pixel.row()) return pixel.row();
  Nearest spot(radius);
  for (const int row : spots_)
    spot.consider(row, distanceToEllipse(sample, coveredArea(store.at(row), store.metadata())));
  if (spot.row()) return spot.row();
  Nearest line(radius);
  for (const int row : lines_)
    line.consider(row, distanceToArea(sample, coveredArea(store.at(row), store.metadata())));
  return line.row();
}

}  // namespace tessaly
