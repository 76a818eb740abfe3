// The points and spots found in one exposure group, on their way to candidates.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessaly {

/// A defective photosite or a fixed shadow, in active coordinates.
struct PointFinding {
  CandidateKind kind = CandidateKind::pixel;  ///< never a line
  double confidence = 0;
  std::int64_t index = 0;  ///< y × width + x of the photosite, of the first one of a shadow
  std::int64_t x = 0;
  std::int64_t y = 0;
  std::int64_t radiusX = 0;
  std::int64_t radiusY = 0;
};

/// The best findings of a group. A noisy sensor has millions; of more than `capacity` only the best are kept, whatever
/// the order in which they came.
class PointFindings {
 public:
  static constexpr std::size_t capacity = 3000;

  void add(const PointFinding& finding);
  void add(const PointFindings& others);

  /// At most `capacity` findings: the most confident first, of equally confident ones spots before pixels, then row
  /// by row.
  [[nodiscard]] std::vector<PointFinding> best() const;

 private:
  std::vector<PointFinding> findings_;
};

}  // namespace tessaly
