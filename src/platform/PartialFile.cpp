#include "platform/PartialFile.h"

#include "platform/DestinationError.h"
#include "platform/MoveFile.h"
#include "platform/SystemCall.h"
#include "platform/UUID.h"

#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <mutex>
#include <set>

namespace tessaly {
namespace {

// Enough for the medium to be busy with while the next bytes are prepared.
constexpr std::int64_t startedAtOnce = std::int64_t{8} * 1024 * 1024;

std::filesystem::path temporaryPath(const std::filesystem::path& folder) {
  return folder / ("." + UUID::random().text() + ".partial");
}

/// The files of this process that still have their temporary name.
struct Temporaries {
  std::mutex lock;  ///< held while such a name appears or goes
  std::set<PartialFile*> files;

  static Temporaries& all() {
    static Temporaries temporaries;
    return temporaries;
  }
};

}  // namespace

std::filesystem::path folderOf(const std::filesystem::path& file) {
  return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

// Every call about the file itself: a failure belongs to the folder that it is written to.
template <typename Call>
auto PartialFile::ask(Call call) const {
  return atDestination(folderOf(path_), [&] { return callSystem(call); });
}

PartialFile::PartialFile(FileSystem& system, const std::filesystem::path& folder, Access access)
    : system_(system), path_(temporaryPath(folder)) {
  Temporaries& temporaries = Temporaries::all();
  const std::lock_guard guard(temporaries.lock);
  const auto [place, isNew] = temporaries.files.insert(this);
  try {
    descriptor_ = ask([&] { return system_.createNew(path_, access == Access::ownerOnly ? 0600 : 0666); });
  } catch (...) {
    temporaries.files.erase(place);
    throw;
  }
  system_.lock(descriptor_);  // where it cannot be had nobody takes the file for abandoned either
}

PartialFile::~PartialFile() {
  ::close(descriptor_);
  if (isTemporary_) removeTemporary();
}

void PartialFile::removeTemporary() {
  const std::lock_guard guard(Temporaries::all().lock);
  system_.unlink(path_);
  Temporaries::all().files.erase(this);
}

// The lock is kept: whoever is about to make or to move a file waits for an end that comes first.
void PartialFile::removeAllAndExit(int status) {
  Temporaries& temporaries = Temporaries::all();
  temporaries.lock.lock();
  for (PartialFile* file : temporaries.files)
    file->system_.unlink(file->path_);
  ::_exit(status);
}

void PartialFile::reserve(std::int64_t length) {
  static_cast<void>(retryWhenInterrupted([&] { return system_.reserve(descriptor_, length); }));
}

bool PartialFile::isInMemory() const {
  return system_.isInMemory(descriptor_);
}

void PartialFile::writeAt(std::int64_t offset, std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ask([&] { return system_.writeAt(descriptor_, offset, bytes); });
    // A file that takes nothing and names no reason would hang us here.
    if (written == 0) throw DestinationError(EIO, folderOf(path_));
    bytes = bytes.subspan(static_cast<std::size_t>(written));
    offset += written;
  }
  wroteUpTo(offset);
}

// Otherwise nothing would go to the medium before the end, and then everything would have to be waited for.
void PartialFile::wroteUpTo(std::int64_t end) {
  if (end - startedUpTo_ < startedAtOnce) return;
  system_.startWriting({descriptor_, startedUpTo_, end - startedUpTo_});
  startedUpTo_ = end;
}

std::size_t PartialFile::readAt(std::int64_t offset, std::span<std::byte> into) const {
  std::size_t done = 0;
  while (done < into.size()) {
    const std::span<std::byte> rest = into.subspan(done);
    const off_t at = offset + static_cast<std::int64_t>(done);
    const ssize_t got = ask([&] { return ::pread(descriptor_, rest.data(), rest.size(), at); });
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

// The range is the size that the source had when it was opened: one that has grown or shrunk since is not cloned.
bool PartialFile::cloneFrom(const InputFile& source) {
  const FileRange all{source.descriptor(), 0, source.size()};
  return retryWhenInterrupted([&] { return system_.clone(all, descriptor_); }) == 0;
}

// Whatever the system refuses here, or leaves out, the caller copies by hand, where a real fault shows again.
std::int64_t PartialFile::copyInside(const InputFile& source, const CopyRange& range) {
  std::int64_t done = 0;
  while (done < range.length) {
    const FileRange rest{source.descriptor(), range.from + done, range.length - done};
    const ssize_t copied = retryWhenInterrupted([&] { return system_.copyRange(rest, descriptor_, range.to + done); });
    if (copied <= 0) break;
    done += copied;
    wroteUpTo(range.to + done);
  }
  return done;
}

std::int64_t PartialFile::copyFrom(const InputFile& source, const CopyRange& range, std::span<std::byte> buffer) {
  assert(!buffer.empty());
  std::int64_t done = copyInside(source, range);
  while (done < range.length) {
    const auto wanted = std::min(range.length - done, static_cast<std::int64_t>(buffer.size()));
    const std::size_t got = source.readAt(range.from + done, buffer.first(static_cast<std::size_t>(wanted)));
    if (got == 0) break;
    writeAt(range.to + done, buffer.first(got));
    done += static_cast<std::int64_t>(got);
  }
  return done;
}

void PartialFile::setMode(mode_t mode) {
  system_.setMode(descriptor_, mode);
}

void PartialFile::setAttribute(const std::string& name, std::span<const std::byte> value) {
  system_.setAttribute(descriptor_, name, value);
}

void PartialFile::synchronize() {
  ask([this] { return system_.synchronize(descriptor_); });
}

void PartialFile::synchronizeAndDropCache() {
  synchronize();
  system_.dropCache(descriptor_);
}

void PartialFile::moveTo(const std::filesystem::path& destination) {
  takeName([&] { moveWithoutReplacing(system_, path_, destination); });
  becameFinal(destination);
}

void PartialFile::replace(const std::filesystem::path& destination) {
  takeName([&] { callSystem([&] { return system_.renameReplacing(path_, destination); }); });
  becameFinal(destination);
}

template <typename Rename>
void PartialFile::takeName(Rename rename) {
  const std::lock_guard guard(Temporaries::all().lock);
  atDestination(folderOf(path_), rename);
  isTemporary_ = false;
  Temporaries::all().files.erase(this);
}

// The file is complete and has its name: a folder that cannot be synchronized does not undo that.
void PartialFile::becameFinal(const std::filesystem::path& destination) const {
  system_.synchronizeFolder(folderOf(destination));
}

}  // namespace tessaly
