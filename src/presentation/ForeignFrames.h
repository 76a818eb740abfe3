// Which calibration frames do not belong to the others, for an analysis that failed over one of them.
//
// Reads files and the interface's language; safe from any thread.
#pragma once

#include "dng/DNGError.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tessaly::ForeignFrames {

/// The frames that do not fit those that most of them fit, in natural order of their names. The error of an analysis
/// names the first frame that does not fit the first one, and that one may be the stranger.
[[nodiscard]] std::vector<std::filesystem::path> smallerSide(std::vector<std::filesystem::path> frames);

/// One line that names them, after `error` has ended the analysis of `frames`; empty for an error of another kind.
[[nodiscard]] std::string line(const DNGError& error, const std::vector<std::filesystem::path>& frames);

}  // namespace tessaly::ForeignFrames
