// DNG files of real cameras, which are not part of the project: for sources that tessaly_real_files_test() builds.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace tessaly::tests {

inline const std::filesystem::path realFilesFolder = TESSALY_REAL_FILES;

/// The DNG files in a folder of them ("accept", "reject", "series"), sorted.
[[nodiscard]] inline std::vector<std::filesystem::path> realFiles(const std::string& kind) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(realFilesFolder / kind)) {
    if (entry.path().extension() == ".dng") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace tessaly::tests
