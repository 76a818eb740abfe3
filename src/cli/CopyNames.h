// The names that a batch may give to its copies.
#pragma once

#include <filesystem>
#include <vector>

namespace tessaly::cli {

/// Whether `path` lies in the folder of the copies under a name that a copy of one of the sources has or may get, the
/// numbered ones too. Letter case never makes a difference, as it makes none to the batch.
[[nodiscard]] bool isNameOfCopy(const std::filesystem::path& path, const std::filesystem::path& folder,
                                const std::vector<std::filesystem::path>& sources);

}  // namespace tessaly::cli
