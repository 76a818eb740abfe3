// What one bright frame says about every column of the active area.
#pragma once

#include "dng/DNGMetadata.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tessaly {

struct ColumnFrameEvidence {
  std::string exposureKey;        ///< of the frame's exposure group
  std::vector<double> residuals;  ///< one an active column; 0 where nothing was measured or only part is offset

  bool operator==(const ColumnFrameEvidence&) const = default;
};

namespace CalibrationEngine {

/// Measures a frame, given as its full raw plane, on up to `threads` threads.
[[nodiscard]] ColumnFrameEvidence columnFrameEvidence(std::span<const std::uint16_t> raw, std::string exposureKey,
                                                      const DNGMetadata& metadata, int threads);

}  // namespace CalibrationEngine
}  // namespace tessaly
