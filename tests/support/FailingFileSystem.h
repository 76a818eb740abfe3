// A file system that works like the real one until a test tells it otherwise: which call fails, with which error, from
// which time on, and what happens meanwhile. It also keeps the order of the calls it was asked for.
#pragma once

#include "platform/FileSystem.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tessaly::tests {

enum class Call {
  createNew,
  lock,
  reserve,
  writeAt,
  clone,
  copyRange,
  setMode,
  setAttribute,
  startWriting,
  synchronize,
  dropCache,
  synchronizeFolder,
  renameWithoutReplacing,
  renameReplacing,
  link,
  unlink,
  createFolders,
};

class FailingFileSystem final : public FileSystem {
 public:
  static constexpr int always = std::numeric_limits<int>::max();

  /// The call fails with this error, `times` times, after it has succeeded `after` times.
  void fail(Call call, int error, int times = always, int after = 0) { faults_[call] = {error, times, after}; }

  /// Runs before the call is made, every time.
  void before(Call call, std::function<void(const std::filesystem::path&)> action) {
    before_[call] = std::move(action);
  }

  /// Makes clones as a file system with shared extents would; the real one below may be of another kind.
  void offerClones() { offersClones_ = true; }

  /// Says that its files are in memory only, or that there is a medium, whatever the real one below is.
  void keepInMemory(bool is) { isInMemory_ = is; }

  /// A write takes at most this many bytes.
  void writeAtMost(std::size_t bytes) { writeLimit_ = bytes; }

  [[nodiscard]] const std::vector<Call>& calls() const { return calls_; }
  [[nodiscard]] long count(Call call) const { return std::count(calls_.begin(), calls_.end(), call); }

  /// The temporary file that was created last.
  [[nodiscard]] const std::filesystem::path& created() const { return created_; }

  int createNew(const std::filesystem::path& path, mode_t mode) override {
    if (fails(Call::createNew, path)) return -1;
    created_ = path;
    return FileSystem::createNew(path, mode);
  }

  int lock(int descriptor) override { return fails(Call::lock, created_) ? -1 : FileSystem::lock(descriptor); }

  int reserve(int descriptor, std::int64_t length) override {
    return fails(Call::reserve, created_) ? -1 : FileSystem::reserve(descriptor, length);
  }

  bool isInMemory(int descriptor) override { return isInMemory_.value_or(FileSystem::isInMemory(descriptor)); }

  ssize_t writeAt(int descriptor, std::int64_t offset, std::span<const std::byte> bytes) override {
    if (fails(Call::writeAt, created_)) return -1;
    return FileSystem::writeAt(descriptor, offset, bytes.first(std::min(bytes.size(), writeLimit_)));
  }

  int clone(const FileRange& source, int target) override {
    if (fails(Call::clone, created_)) return -1;
    if (!offersClones_) return FileSystem::clone(source, target);
    return FileSystem::copyRange(source, target, source.offset) == source.length ? 0 : -1;
  }

  ssize_t copyRange(const FileRange& source, int target, std::int64_t to) override {
    return fails(Call::copyRange, created_) ? -1 : FileSystem::copyRange(source, target, to);
  }

  int setMode(int descriptor, mode_t mode) override {
    return fails(Call::setMode, created_) ? -1 : FileSystem::setMode(descriptor, mode);
  }

  int setAttribute(int descriptor, const std::string& name, std::span<const std::byte> value) override {
    return fails(Call::setAttribute, created_) ? -1 : FileSystem::setAttribute(descriptor, name, value);
  }

  int startWriting(const FileRange& range) override {
    return fails(Call::startWriting, created_) ? -1 : FileSystem::startWriting(range);
  }

  int synchronize(int descriptor) override {
    return fails(Call::synchronize, created_) ? -1 : FileSystem::synchronize(descriptor);
  }

  int dropCache(int descriptor) override {
    return fails(Call::dropCache, created_) ? -1 : FileSystem::dropCache(descriptor);
  }

  int synchronizeFolder(const std::filesystem::path& folder) override {
    return fails(Call::synchronizeFolder, folder) ? -1 : FileSystem::synchronizeFolder(folder);
  }

  int renameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to) override {
    return fails(Call::renameWithoutReplacing, to) ? -1 : FileSystem::renameWithoutReplacing(from, to);
  }

  int renameReplacing(const std::filesystem::path& from, const std::filesystem::path& to) override {
    return fails(Call::renameReplacing, to) ? -1 : FileSystem::renameReplacing(from, to);
  }

  int link(const std::filesystem::path& existing, const std::filesystem::path& name) override {
    return fails(Call::link, name) ? -1 : FileSystem::link(existing, name);
  }

  int unlink(const std::filesystem::path& path) override {
    return fails(Call::unlink, path) ? -1 : FileSystem::unlink(path);
  }

  int createFolders(const std::filesystem::path& folder) override {
    return fails(Call::createFolders, folder) ? -1 : FileSystem::createFolders(folder);
  }

 private:
  struct Fault {
    int error = 0;
    int times = 0;
    int after = 0;
  };

  bool fails(Call call, const std::filesystem::path& path) {
    calls_.push_back(call);
    if (before_.contains(call)) before_[call](path);
    const auto found = faults_.find(call);
    if (found == faults_.end()) return false;
    Fault& fault = found->second;
    if (fault.after > 0) return --fault.after, false;
    if (fault.times == 0) return false;
    --fault.times;
    errno = fault.error;
    return true;
  }

  std::map<Call, Fault> faults_;
  std::map<Call, std::function<void(const std::filesystem::path&)>> before_;
  bool offersClones_ = false;
  std::optional<bool> isInMemory_;
  std::size_t writeLimit_ = std::numeric_limits<std::size_t>::max();
  std::vector<Call> calls_;
  std::filesystem::path created_;
};

}  // namespace tessaly::tests
