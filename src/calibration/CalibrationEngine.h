// Learns the fixed defects of one sensor from a set of calibration frames: evenly lit bright frames and lens-cap dark
// frames of one camera body at one or more exposure settings.
//
// Stateless and synchronous; call it off the user-interface thread. Results never depend on the number of threads.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <filesystem>
#include <utility>
#include <vector>

namespace tessaly::CalibrationEngine {

/// Whether frames are also looked at beyond the documented detectors, whose results are the same with both.
enum class Opinions { documented, both };

/// Analyses the frames. `progress` is called on the calling thread; an exception that it throws ends the analysis and
/// reaches the caller unchanged. Throws DNGError; one that belongs to a particular file is wrapped with its name.
[[nodiscard]] CalibrationResult analyze(std::vector<std::filesystem::path> urls,
                                        const CalibrationProgressHandler& progress,
                                        Opinions opinions = Opinions::documented);

/// A preview of one photograph with lifted shadows, in which a faint one-column defect can be seen.
[[nodiscard]] std::pair<DNGMetadata, RawPreviewImage> makeInspectionPreview(const std::filesystem::path& url);

}  // namespace tessaly::CalibrationEngine
