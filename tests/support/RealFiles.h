// Real camera files, which are not part of the project: tests that want them skip where they are absent.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace tessaly::tests {

/// The folder that TESSALY_SAMPLES names, else the one that was given to the build.
[[nodiscard]] inline std::filesystem::path realFilesFolder() {
  const char* const chosen = std::getenv("TESSALY_SAMPLES");
  return chosen != nullptr ? chosen : TESSALY_SAMPLES_FOLDER;
}

/// The DNG files in a folder of them ("accept", "reject", "series"), sorted; none where it is absent.
[[nodiscard]] inline std::vector<std::filesystem::path> realFiles(const std::string& kind) {
  std::vector<std::filesystem::path> files;
  std::error_code absent;
  for (const auto& entry : std::filesystem::directory_iterator(realFilesFolder() / kind, absent)) {
    if (entry.path().extension() == ".dng") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace tessaly::tests
