// The spelling of paths, without a look at any file.
//
// Stateless.
#pragma once

#include <filesystem>

namespace tessaly {

/// "/out/a.dng" for "/out/a.dng/"; the root stays the root.
[[nodiscard]] std::filesystem::path withoutTrailingSlash(const std::filesystem::path& path);

/// An absolute path without ".", "..", repeated slashes and a slash at the end.
[[nodiscard]] std::filesystem::path standardizedSpelling(const std::filesystem::path& absolute);

}  // namespace tessaly
