// What programs that were killed have left in a folder: hidden temporary files of full size that nobody writes any more
// (see PartialFile.h).
#pragma once

#include <filesystem>
#include <vector>

namespace tessaly {

/// A file with the name of a temporary one that stays where it is.
struct LeftFile {
  enum class Reason {
    notRegular,  ///< a folder, a link, a device
    otherUser,   ///< of another user
    recent,      ///< changed less than a day ago
    inUse,       ///< its writer's lock is held, or cannot be asked for
    refused,     ///< the system does not let it be opened or removed
  };

  std::filesystem::path file;
  Reason reason = Reason::notRegular;

  bool operator==(const LeftFile&) const = default;
};

/// Whether the name is exactly that of a temporary file: "." + UUID in capitals + ".partial".
[[nodiscard]] bool isTemporaryName(const std::filesystem::path& name);

/// Removes from the top level of the folder every temporary file that is a regular file of this user, has not changed
/// for a day and has no writer. Gives the others, by name. A folder that cannot be listed has none.
[[nodiscard]] std::vector<LeftFile> removeAbandonedFiles(const std::filesystem::path& folder);

}  // namespace tessaly
