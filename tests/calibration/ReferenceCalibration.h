// A second, plain implementation of the whole calibration analysis: no bands, no reuse of a reading, every median by
// sorting. It is the oracle for the fast engine and shares nothing with it but the records. Keep it that way: when a
// rule changes, change it here from the rule, never by copying.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tessaly::reference {

struct Frame {
  DNGMetadata metadata;
  std::vector<std::uint16_t> samples;  ///< rawWidth × rawHeight
};

/// Analyses frames that are already sorted and compatible. Ids of the candidates are left empty.
[[nodiscard]] CalibrationResult analyze(const std::vector<Frame>& frames);

[[nodiscard]] RawPreviewImage brightFieldPreview(const Frame& frame);
[[nodiscard]] RawPreviewImage inspectionPreview(const Frame& frame);

}  // namespace tessaly::reference
