// The second opinion: measures what the documented detectors cannot see (soft dust, weak columns, partial columns
// without a seed, unsteady and weakly dim photosites), and says which documented candidates it confirms. It proposes;
// it never decides.
//
// Synchronous; results never depend on the number of threads. At most 24 bytes a sample, whatever the number of frames
// and groups: sums over groups are kept as planes, a group's own planes only while it is measured, and the groups vote
// in a second reading, at the places found alone.
#pragma once

#include "calibration/CalibrationIntake.h"
#include "calibration/CalibrationRecords.h"

#include <filesystem>
#include <functional>
#include <span>

namespace tessaly::second {

/// Called on the calling thread before a frame is read and between steps without one, then with an empty path. What it
/// throws ends the work and reaches the caller unchanged.
using Step = std::function<void(const std::filesystem::path&)>;

/// `groups`: all groups, told bright from dark; `reference` describes all frames; `documented`: the documented
/// candidates. `samples` is a buffer for raw planes.
[[nodiscard]] SecondOpinion secondOpinion(std::span<const CalibrationGroup> groups, const DNGMetadata& reference,
                                          std::span<const CalibrationCandidate> documented, RawSamples& samples,
                                          int threads, const Step& step);

/// How often frames are read, both readings together: steps with a path.
[[nodiscard]] std::int64_t frameReadings(std::span<const CalibrationGroup> groups);

}  // namespace tessaly::second
