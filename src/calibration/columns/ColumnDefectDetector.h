// Finds whole columns whose level is offset from their neighbours with the same sign in nearly every bright frame and
// in every exposure group.
//
// Stateless.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "calibration/columns/ColumnEvidence.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tessaly {

/// Adjacent defective columns whose offsets have one sign.
struct ColumnDetection {
  std::int64_t x = 0;  ///< first column, in active coordinates
  std::int64_t width = 0;
  double effect = 0;     ///< signed offset of the strongest column, in residual units
  double sigma = 0;      ///< |effect| in robust standard deviations
  double agreement = 0;  ///< smallest fraction of frames of the same sign
  std::int64_t exposureGroupCount = 0;

  bool operator==(const ColumnDetection&) const = default;
};

namespace ColumnDefectDetector {

inline constexpr double minimumSigma = 4.0;
inline constexpr double minimumAgreement = 0.9;

/// The residuals less the median of their surroundings, so that slow changes across the frame do not count; 0 in the 32
/// columns at either border.
[[nodiscard]] std::vector<double> detrended(const std::vector<double>& residuals);

/// The strongest detection first, equally strong ones by x. Every frame has `activeWidth` residuals.
[[nodiscard]] std::vector<ColumnDetection> detect(std::span<const ColumnFrameEvidence> frames, std::int64_t activeWidth,
                                                  double leastSigma = minimumSigma);

}  // namespace ColumnDefectDetector

namespace CalibrationEngine {

/// A line over the full active height, in raw coordinates.
[[nodiscard]] CalibrationCandidate lineCandidate(const ColumnDetection& detection, const DNGMetadata& metadata);

/// The lines of all detections.
[[nodiscard]] std::vector<CalibrationCandidate> detectColumns(std::span<const ColumnFrameEvidence> frames,
                                                              const DNGMetadata& metadata);

}  // namespace CalibrationEngine
}  // namespace tessaly
