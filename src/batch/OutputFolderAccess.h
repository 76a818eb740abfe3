// The custom output folder that the user chose once and that later batches use.
#pragma once

#include <filesystem>
#include <stdexcept>

namespace tessaly {

/// The saved folder is missing or cannot be written; what() is the text for the user, in the interface's language.
class OutputFolderPermission final : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

namespace OutputFolderAccess {

/// Remembers an existing folder; throws std::system_error and changes nothing for anything else.
void save(const std::filesystem::path& folder);

/// The remembered folder; throws OutputFolderPermission when there is none or it is no writable folder.
[[nodiscard]] std::filesystem::path resolve();

}  // namespace OutputFolderAccess
}  // namespace tessaly
