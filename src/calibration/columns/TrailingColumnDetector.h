// Finds partial defective columns: normal above a fixed pixel, offset from their neighbours below it, down to the last
// row. Judges what TrailingEvidence measured.
//
// Stateless.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "calibration/columns/TrailingEvidence.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tessaly {

/// A trail below a fixed pixel.
struct TrailDetection {
  TrailSeed seed;
  double effect = 0;     ///< signed column offset, in residual units
  double agreement = 0;  ///< smallest fraction of frames of the same sign
  std::int64_t exposureGroupCount = 0;

  bool operator==(const TrailDetection&) const = default;
};

namespace TrailingColumnDetector {

inline constexpr double minimumEffect = 2.5;
inline constexpr double minimumAgreement = 0.8;

/// The strongest detection first, equally strong ones by x, then y. Nothing when a frame has not one value a seed.
[[nodiscard]] std::vector<TrailDetection> detect(std::span<const TrailSeed> seeds,
                                                 std::span<const TrailFrameEvidence> frames,
                                                 double leastEffect = minimumEffect);

}  // namespace TrailingColumnDetector

namespace CalibrationEngine {

/// Lines from the seed's row to the last active one, in raw coordinates.
[[nodiscard]] std::vector<CalibrationCandidate> trailCandidates(std::span<const TrailDetection> detections,
                                                                const DNGMetadata& metadata);

}  // namespace CalibrationEngine
}  // namespace tessaly
