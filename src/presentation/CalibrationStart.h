// What must hold before an analysis starts: the rule of the profile creation tab, shared with the command line.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tessaly::CalibrationStart {

/// What the user is told about a folder with too few candidate files to analyse; nothing when there are enough.
[[nodiscard]] std::optional<std::string> tooFewFiles(const std::vector<std::filesystem::path>& candidates);

}  // namespace tessaly::CalibrationStart
