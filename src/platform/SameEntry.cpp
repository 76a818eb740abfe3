#include "platform/SameEntry.h"

#include "platform/FolderNames.h"
#include "platform/Paths.h"
#include "platform/Text.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>

namespace tessaly {
namespace {

namespace fs = std::filesystem;

// exFAT, FAT, both drivers of NTFS, CIFS and SMB, HFS+. The headers name only some of them.
constexpr long foldingMedia[] = {0x2011BAB0, MSDOS_SUPER_MAGIC, 0x7366746E, 0x5346544E, 0xFF534D42, 0xFE534D42, 0x482B};

/// ext4 and F2FS let single folders fold case.
bool isMarkedAsFolding(const fs::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return false;
  int flags = 0;
  const bool isKnown = ::ioctl(descriptor, FS_IOC_GETFLAGS, &flags) == 0;
  ::close(descriptor);
  return isKnown && (flags & FS_CASEFOLD_FL) != 0;
}

/// Absolute, with links followed; the last one may lead to what does not exist yet.
fs::path resolved(const fs::path& path) {
  std::error_code error;
  if (fs::is_symlink(path, error) && !fs::exists(path, error))
    return fs::weakly_canonical(path.parent_path() / fs::read_symlink(path, error), error);
  const fs::path absolute = fs::absolute(path, error);
  if (error) return path;
  // By the system first: behind a link ".." leads elsewhere than its spelling says.
  const fs::path canonical = fs::weakly_canonical(absolute, error);
  return error ? standardizedSpelling(absolute) : withoutTrailingSlash(canonical);
}

/// The other case for each letter that has one in ASCII, which every folding folder folds.
std::string withOtherCase(std::string name) {
  for (char& character : name) {
    const bool isLetter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    if (isLetter) character = static_cast<char>(character ^ 0x20);
  }
  return name;
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Compares names by what their folders answer.
class Comparison {
 public:
  explicit Comparison(const NameLookup& lookup) : lookup_(lookup) {}

  [[nodiscard]] bool isSame(const fs::path& left, const fs::path& right) const;

 private:
  [[nodiscard]] bool isOneName(const fs::path& folder, const fs::path& left, const fs::path& right) const;
  [[nodiscard]] bool foldsCase(const fs::path& folder) const;

  const NameLookup& lookup_;
};

bool Comparison::isSame(const fs::path& left, const fs::path& right) const {
  if (left == right || lookup_.isSameInode(left, right)) return true;
  const fs::path leftName = left.filename();
  const fs::path rightName = right.filename();
  if (leftName.empty() || rightName.empty() || lowerCased(leftName.native()) != lowerCased(rightName.native()))
    return false;
  if (!isSame(left.parent_path(), right.parent_path())) return false;
  return leftName == rightName || isOneName(left.parent_path(), leftName, rightName);
}

/// Two spellings of which the folder knows both, but holds one, are one name. When it knows neither, they will be one
/// where it folds case.
bool Comparison::isOneName(const fs::path& folder, const fs::path& left, const fs::path& right) const {
  const bool knowsLeft = lookup_.exists(folder / left);
  if (knowsLeft != lookup_.exists(folder / right)) return false;
  if (!knowsLeft) return foldsCase(folder);
  const std::vector<std::string> names = lookup_.names(folder);
  return !contains(names, left.native()) || !contains(names, right.native());
}

/// What the folder answers to one of its names spelled otherwise; without such a name, what kind it is; a folder that
/// is still to come will do as the one around it.
bool Comparison::foldsCase(const fs::path& folder) const {
  const std::vector<std::string> names = lookup_.names(folder);
  for (const std::string& name : names) {
    const std::string other = withOtherCase(name);
    if (other != name && !contains(names, other)) return lookup_.exists(folder / other);
  }
  if (lookup_.isFoldingKind(folder)) return true;
  const fs::path around = folder.parent_path();
  return around != folder && !lookup_.exists(folder) && foldsCase(around);
}

}  // namespace

const NameLookup& NameLookup::system() {
  static const NameLookup real;
  return real;
}

bool NameLookup::exists(const fs::path& path) const {
  std::error_code error;
  return fs::exists(fs::symlink_status(path, error));
}

bool NameLookup::isSameInode(const fs::path& left, const fs::path& right) const {
  std::error_code error;
  return fs::equivalent(left, right, error) && !error;
}

std::vector<std::string> NameLookup::names(const fs::path& folder) const {
  try {
    return namesInFolder(folder);
  } catch (const fs::filesystem_error&) {
    return {};
  }
}

bool NameLookup::isFoldingKind(const fs::path& folder) const {
  struct statfs status {};
  if (::statfs(folder.c_str(), &status) != 0) return false;
  const bool always =
      std::find(std::begin(foldingMedia), std::end(foldingMedia), status.f_type) != std::end(foldingMedia);
  return always || isMarkedAsFolding(folder);
}

bool isSameEntry(const fs::path& left, const fs::path& right, const NameLookup& lookup) {
  return Comparison(lookup).isSame(resolved(left), resolved(right));
}

}  // namespace tessaly
