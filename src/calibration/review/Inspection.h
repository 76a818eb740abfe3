// A photograph beside a finished analysis, in which its user looks for the columns that the frames did not show.
//
// Stateless.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <filesystem>

namespace tessaly {

/// The photograph in full resolution with lifted shadows. Throws InvalidInput for one of another camera or of other
/// dimensions than the calibrated one, DNGError for one that cannot be read.
[[nodiscard]] RawPreviewImage inspectionOf(const std::filesystem::path& photograph, const DNGMetadata& calibrated);

}  // namespace tessaly
