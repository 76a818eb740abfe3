// Whether two paths lead to one entry of a folder, also where the file system folds case and also for names that do
// not exist yet.
//
// Device and inode tell it for names that exist, on most media. Some give each spelling of a name its own inode, and a
// name that is still to come has none: there the folder itself is asked what it answers to another spelling.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tessaly {

/// What a file system is asked; tests put one that folds case in its place.
class NameLookup {
 public:
  NameLookup() = default;
  NameLookup(const NameLookup&) = delete;
  NameLookup& operator=(const NameLookup&) = delete;
  virtual ~NameLookup() = default;

  [[nodiscard]] static const NameLookup& system();

  /// Whether something bears the name; a link counts itself.
  [[nodiscard]] virtual bool exists(const std::filesystem::path& path) const;

  /// Whether both exist and have the same device and inode.
  [[nodiscard]] virtual bool isSameInode(const std::filesystem::path& left, const std::filesystem::path& right) const;

  /// The names in a folder as they are spelled there; none when it cannot be listed.
  [[nodiscard]] virtual std::vector<std::string> names(const std::filesystem::path& folder) const;

  /// Whether the folder is marked to fold case, or lies on a medium of a kind that does.
  [[nodiscard]] virtual bool isFoldingKind(const std::filesystem::path& folder) const;
};

/// Links are followed. Paths that cannot be examined are compared as they are spelled.
[[nodiscard]] bool isSameEntry(const std::filesystem::path& left, const std::filesystem::path& right,
                               const NameLookup& lookup = NameLookup::system());

}  // namespace tessaly
