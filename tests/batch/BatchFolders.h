// A source folder with small files and an output folder for one batch, and what a test wants to know of them.
#pragma once

#include "batch/BatchRecords.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

namespace tessaly::tests {

using Names = std::vector<std::string>;

/// The names of a folder's entries, hidden ones too, sorted by their bytes; none when there is no such folder.
[[nodiscard]] inline Names namesIn(const std::filesystem::path& folder) {
  Names names;
  if (!std::filesystem::exists(folder)) return names;
  for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename().native());
  std::sort(names.begin(), names.end());
  return names;
}

[[nodiscard]] inline Names lines(const std::string& text) {
  Names result(1);
  for (const char character : text) {
    if (character == '\n') {
      result.emplace_back();
    } else {
      result.back() += character;
    }
  }
  return result;
}

struct BatchFolders {
  /// Files with their own names as contents.
  explicit BatchFolders(const Names& sources = {}) {
    std::filesystem::create_directory(input);
    for (const std::string& name : sources)
      writeText(input / name, name);
  }

  /// a0.dng, a1.dng, …
  [[nodiscard]] static BatchFolders withSources(int count) {
    Names names;
    for (int number = 0; number < count; ++number)
      names.push_back("a" + std::to_string(number) + ".dng");
    return BatchFolders(names);
  }

  void makeOutput(const Names& names) const {
    std::filesystem::create_directories(output);
    for (const std::string& name : names)
      writeText(output / name, "earlier");
  }

  TemporaryFolder folder;
  std::filesystem::path input = folder / "input";
  std::filesystem::path output = folder / "output";
};

}  // namespace tessaly::tests
