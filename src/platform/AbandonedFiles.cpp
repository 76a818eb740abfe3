#include "platform/AbandonedFiles.h"

#include "platform/FolderNames.h"
#include "platform/UUID.h"
#include "platform/WriterLock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string_view>
#include <system_error>

namespace tessaly {
namespace {

using Reason = LeftFile::Reason;

constexpr std::string_view ending = ".partial";
constexpr time_t oneDay = time_t{24} * 60 * 60;

class OpenFile {
 public:
  explicit OpenFile(const std::filesystem::path& path)
      : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY)) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }

  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

std::optional<Reason> reasonToLeave(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) return Reason::notRegular;
  if (status.st_uid != ::geteuid()) return Reason::otherUser;
  if (status.st_mtime > ::time(nullptr) - oneDay) return Reason::recent;
  return std::nullopt;
}

// By its path first, so that nothing is opened that opening could wake; then again what was really opened.
std::optional<Reason> removeUnlessNeeded(const std::filesystem::path& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return Reason::refused;
  if (const auto reason = reasonToLeave(status)) return reason;
  const OpenFile file(path);
  if (file.descriptor() < 0 || ::fstat(file.descriptor(), &status) != 0) return Reason::refused;
  if (const auto reason = reasonToLeave(status)) return reason;
  if (!hasNoWriter(file.descriptor())) return Reason::inUse;
  if (::unlink(path.c_str()) != 0) return Reason::refused;
  return std::nullopt;
}

// Another batch may have removed it meanwhile.
bool isStillThere(const std::filesystem::path& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 || errno != ENOENT;
}

std::vector<std::filesystem::path> temporaryFilesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  try {
    for (const std::string& name : namesInFolder(folder)) {
      if (isTemporaryName(name)) files.push_back(folder / name);
    }
  } catch (const std::filesystem::filesystem_error&) {
    return {};
  }
  std::ranges::sort(files);
  return files;
}

}  // namespace

bool isTemporaryName(const std::filesystem::path& name) {
  const std::string_view text = name.native();
  if (!text.starts_with('.') || !text.ends_with(ending)) return false;
  const std::string_view identifier = text.substr(1, text.size() - 1 - ending.size());
  const std::optional<UUID> parsed = UUID::parse(identifier);
  return parsed && parsed->text() == identifier;
}

std::vector<LeftFile> removeAbandonedFiles(const std::filesystem::path& folder) {
  std::vector<LeftFile> left;
  for (const std::filesystem::path& file : temporaryFilesIn(folder)) {
    const std::optional<Reason> reason = removeUnlessNeeded(file);
    if (reason && isStillThere(file)) left.push_back({file, *reason});
  }
  return left;
}

}  // namespace tessaly
