// Grey pictures of a raw plane, to look at its defects.
//
// Stateless.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <cstdint>
#include <span>

namespace tessaly::CalibrationEngine {

/// The active area of a raw plane, at most `maxWidth` columns wide, stretched linearly between its 0.1 % and 99.9 %
/// points. On a mosaic each value is the mean of 2 × 2 samples.
[[nodiscard]] RawPreviewImage makePreview(std::span<const std::uint16_t> raw, const DNGMetadata& metadata,
                                          std::int64_t maxWidth);

/// The same in full resolution up to 8000 columns, with lifted shadows.
[[nodiscard]] RawPreviewImage inspectionPreview(std::span<const std::uint16_t> raw, const DNGMetadata& metadata);

}  // namespace tessaly::CalibrationEngine
