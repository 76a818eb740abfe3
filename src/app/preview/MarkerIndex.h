// Finds the markers in a part of the picture without looking at all of them.
//
// Positions are active coordinates; a marker is named by its row in the candidate store.
#pragma once

#include "app/preview/CandidateStore.h"

#include <QPointF>
#include <QRectF>
#include <cstdint>
#include <optional>
#include <vector>

namespace tessaly {

/// The samples that a candidate covers.
[[nodiscard]] QRectF coveredArea(const CalibrationCandidate& candidate, const DNGMetadata& metadata);

class MarkerIndex {
 public:
  void rebuild(const CandidateStore& store);

  /// Pixels whose sample touches `area`.
  [[nodiscard]] std::vector<int> pixelsIn(const QRectF& area) const;
  [[nodiscard]] const std::vector<int>& lines() const { return lines_; }
  [[nodiscard]] const std::vector<int>& spots() const { return spots_; }

  /// The marker that a click at `sample` means, at most `radius` samples away: a pixel before a spot before a line,
  /// then the nearest.
  [[nodiscard]] std::optional<int> hit(const CandidateStore& store, QPointF sample, double radius) const;

 private:
  struct CellRange;

  void layOutCells(const DNGMetadata& metadata);
  void fillCells();
  [[nodiscard]] std::size_t cellOf(QPointF sample) const;
  [[nodiscard]] CellRange cellsOf(const QRectF& area) const;

  std::int64_t columns_ = 1;
  std::int64_t rows_ = 1;
  std::vector<int> pixels_;              ///< rows of pixel candidates
  std::vector<QPointF> positions_;       ///< of the same pixels
  std::vector<std::size_t> cellStarts_;  ///< where each cell's pixels begin in inCells_
  std::vector<std::size_t> inCells_;     ///< positions in pixels_, cell after cell
  std::vector<int> lines_;
  std::vector<int> spots_;
};

}  // namespace tessaly
