// The calibration frames that arguments name: files, and the candidate files of folders.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tessaly::cli {

struct CalibrationFrames {
  std::vector<std::filesystem::path> files;
  std::string folder;  ///< the name that an error of no single file is told with
};

/// Throws CommandFailure for what does not exist, a folder that cannot be listed, and folders with too few files.
[[nodiscard]] CalibrationFrames calibrationFrames(const std::vector<std::string>& arguments);

}  // namespace tessaly::cli
