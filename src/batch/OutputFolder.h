// Which folder a batch writes into, and when it is the folder it reads from.
#pragma once

#include <filesystem>

namespace tessaly {

/// Where copies go unless another folder was chosen: the subfolder "Tessaly Results" of the input folder.
[[nodiscard]] std::filesystem::path defaultOutputFolder(const std::filesystem::path& inputFolder);

/// The absolute path without ".", ".." and a slash at the end; ".." stays where it leads through a symbolic link to
/// somewhere else.
[[nodiscard]] std::filesystem::path standardized(const std::filesystem::path& folder);

/// Whether both are one folder: by their standardised spelling, by device and inode or, where the file system folds
/// case, in another spelling.
[[nodiscard]] bool isSameFolder(const std::filesystem::path& left, const std::filesystem::path& right);

}  // namespace tessaly
