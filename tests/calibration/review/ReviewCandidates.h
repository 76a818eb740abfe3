// Candidates on a small sensor, and what the rules of the review refuse.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "calibration/TestSensor.h"
#include "calibration/review/InvalidInput.h"

#include <cstdint>
#include <string>

namespace tessaly::tests {

/// An active area of 100 × 80 samples from (10, 20) on.
[[nodiscard]] inline DNGMetadata sensor() {
  return withBorder(linearSensor(100, 80), 10, 20);
}

[[nodiscard]] inline CalibrationCandidate candidate(CalibrationCandidate::Kind kind, double confidence = 0.5) {
  CalibrationCandidate result;
  result.id = UUID::random();
  result.kind = kind;
  result.x = 40;
  result.yStart = 50;
  result.yEnd = 50;
  result.confidence = confidence;
  result.reason = "reason";
  return result;
}

[[nodiscard]] inline CalibrationCandidate spot(double confidence, std::int64_t radiusX, std::int64_t radiusY) {
  CalibrationCandidate result = candidate(CalibrationCandidate::Kind::spot, confidence);
  result.radiusX = radiusX;
  result.radiusY = radiusY;
  return result;
}

/// What a call refuses with.
template <typename Call>
[[nodiscard]] std::string refusal(Call call) {
  try {
    (void)call();
    return "accepted";
  } catch (const InvalidInput& error) {
    return error.what();
  }
}

}  // namespace tessaly::tests
