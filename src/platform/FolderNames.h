// What lies in a folder.
//
// Stateless. The standard library's own iterator ends the program where it is refused memory.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tessaly {

/// The names (native bytes) of all entries, hidden ones too, in no particular order. Throws
/// std::filesystem::filesystem_error with the folder where it cannot be listed.
[[nodiscard]] std::vector<std::string> namesInFolder(const std::filesystem::path& folder);

}  // namespace tessaly
