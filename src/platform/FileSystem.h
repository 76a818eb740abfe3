// The one seam through which the program makes, fills, moves and removes files, so that tests can put a failing twin
// (full disk, refused rename, interrupted call) in its place.
//
// Every operation is one call of the system and reports like one: a count, a descriptor or 0 for success, -1 with the
// reason in errno for failure. Loops, retries and exceptions belong to the callers above (see PartialFile.h). The real
// one has no state; it may be used by several threads.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace tessaly {

/// `length` bytes of an open file from `offset` on.
struct FileRange {
  int descriptor = -1;
  std::int64_t offset = 0;
  std::int64_t length = 0;
};

class FileSystem {
 public:
  FileSystem() = default;
  FileSystem(const FileSystem&) = delete;
  FileSystem& operator=(const FileSystem&) = delete;
  virtual ~FileSystem() = default;

  /// The real one. Its first use makes a write beyond a file-size limit fail with EFBIG where the process would
  /// otherwise be ended by SIGXFSZ; a handler that the process has installed stays.
  [[nodiscard]] static FileSystem& system();

  /// Creates a file for reading and writing that must not exist yet, with the mode & ~umask; gives its descriptor.
  virtual int createNew(const std::filesystem::path& path, mode_t mode);

  /// Lets other processes see, as long as the file is open, that it is being written (see WriterLock.h).
  virtual int lock(int descriptor);

  /// May give an empty file its length and the space for it, where the file system can; it reads as zeros then.
  virtual int reserve(int descriptor, std::int64_t length);

  /// Whether the file system has no medium behind the memory that it keeps its files in.
  virtual bool isInMemory(int descriptor);

  virtual ssize_t writeAt(int descriptor, std::int64_t offset, std::span<const std::byte> bytes);

  /// Makes `target`, an empty file, share the data of `source` at the same offset, where the file system can.
  virtual int clone(const FileRange& source, int target);

  /// Copies inside the system to offset `to` of `target`; gives the number of bytes, 0 at the end of the source.
  virtual ssize_t copyRange(const FileRange& source, int target, std::int64_t to);

  virtual int setMode(int descriptor, mode_t mode);

  virtual int setAttribute(int descriptor, const std::string& name, std::span<const std::byte> value);

  /// Sets the medium to work on bytes that were written, without waiting for it.
  virtual int startWriting(const FileRange& range);

  /// Returns when the file's bytes are on the medium.
  virtual int synchronize(int descriptor);

  /// Asks the system to forget the file's pages, so that the next read is answered by the medium.
  virtual int dropCache(int descriptor);

  /// Returns when the names in a folder are on the medium.
  virtual int synchronizeFolder(const std::filesystem::path& folder);

  virtual int renameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to);
  virtual int renameReplacing(const std::filesystem::path& from, const std::filesystem::path& to);
  virtual int link(const std::filesystem::path& existing, const std::filesystem::path& name);
  virtual int unlink(const std::filesystem::path& path);

  /// Creates the folder with all missing folders above it; succeeds when it is there already.
  virtual int createFolders(const std::filesystem::path& folder);
};

}  // namespace tessaly
