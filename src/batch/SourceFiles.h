// The one rule for "is this a candidate source file", shared by batch, calibration tab, counts and command line.
#pragma once

#include <cstddef>
#include <filesystem>
#include <system_error>
#include <vector>

namespace tessaly {

/// Whether the name's extension, lower-cased, is "dng" or one of the cameras' own raw formats.
[[nodiscard]] bool isSourceFileName(const std::filesystem::path& name);

/// An entry with a source file's name that could not be looked at.
struct UnexaminedEntry {
  std::filesystem::path path;
  std::error_code error;
};

struct SourceListing {
  std::vector<std::filesystem::path> files;
  std::vector<UnexaminedEntry> unexamined;  ///< by their bytes

  /// Where below the output folder the copy of each file goes; empty when all go into the output folder itself.
  std::vector<std::filesystem::path> subfolders{};

  [[nodiscard]] std::filesystem::path subfolderOf(std::size_t number) const {
    return subfolders.empty() ? std::filesystem::path() : subfolders[number];
  }
};

/// The candidate source files of a folder, as sourceFiles() gives them, and the entries that may be some.
[[nodiscard]] SourceListing listSourceFiles(const std::filesystem::path& folder);

/// The candidate source files at the top level of a folder, in natural order of their names: regular files (a symbolic
/// link is none) that are not hidden and have a source file's name. Throws std::system_error when the folder cannot be
/// listed.
[[nodiscard]] std::vector<std::filesystem::path> sourceFiles(const std::filesystem::path& folder);

}  // namespace tessaly
