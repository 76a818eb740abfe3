// A new file that grows under a hidden temporary name, "." + UUID + ".partial", in the folder where it will stay, and
// gets its final name when it is complete. Whatever happens, no incomplete file bears a final name and the temporary
// one is removed.
//
// Owned and used by one thread. What the system refuses leaves as DestinationError with the folder; a source that
// cannot be read as std::system_error.
#pragma once

#include "platform/FileSystem.h"
#include "platform/InputFile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace tessaly {

/// `length` bytes that go from one offset of a file to an offset of another.
struct CopyRange {
  std::int64_t from = 0;
  std::int64_t to = 0;
  std::int64_t length = 0;

  bool operator==(const CopyRange&) const = default;
};

/// The folder that a file stands in; of a bare name ".".
[[nodiscard]] std::filesystem::path folderOf(const std::filesystem::path& file);

/// Who may open a new file before its permission bits are set.
enum class Access { asTheUmaskSays, ownerOnly };

class PartialFile {
 public:
  /// Creates the file in an existing folder and takes its writer's lock. `system` must outlive this object.
  PartialFile(FileSystem& system, const std::filesystem::path& folder, Access access = Access::asTheUmaskSays);
  PartialFile(const PartialFile&) = delete;
  PartialFile& operator=(const PartialFile&) = delete;

  /// Removes the file unless it has got its final name; a failure of that is ignored.
  ~PartialFile();

  /// Ends the process at once, whatever its other threads are doing. The temporary files of all of them are removed
  /// first; a file that is just getting its final name gets it.
  [[noreturn]] static void removeAllAndExit(int status);

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// Tells the file system how long the file, empty so far, will be. A hint that may give it that length at once; a
  /// disk that is full shows when it is written to.
  void reserve(std::int64_t length);

  /// Whether nothing of the file is ever flushed to a medium.
  [[nodiscard]] bool isInMemory() const;

  void writeAt(std::int64_t offset, std::span<const std::byte> bytes);

  /// Reads what was written; gives the number of bytes, fewer than asked only at the end of the file.
  [[nodiscard]] std::size_t readAt(std::int64_t offset, std::span<std::byte> into) const;

  /// Makes the file, empty so far, share all data of `source`; false where the file system cannot.
  [[nodiscard]] bool cloneFrom(const InputFile& source);

  /// Copies bytes of `source`, inside the system where it can, else in slices through `buffer` (not empty). Gives the
  /// number of bytes copied: fewer than asked only when the source has become shorter.
  [[nodiscard]] std::int64_t copyFrom(const InputFile& source, const CopyRange& range, std::span<std::byte> buffer);

  /// Sets the permission bits, where the file system keeps any.
  void setMode(mode_t mode);

  /// Gives the file an extended attribute, where the file system takes it.
  void setAttribute(const std::string& name, std::span<const std::byte> value);

  /// Brings the bytes to the medium and asks the system to forget them (as far as it does), so that whoever reads the
  /// file next is answered by the medium.
  void synchronizeAndDropCache();

  /// Brings the bytes to the medium.
  void synchronize();

  /// The final name, without ever replacing anything (see moveWithoutReplacing).
  void moveTo(const std::filesystem::path& destination);

  /// The final name, in the place of a file that may bear it.
  void replace(const std::filesystem::path& destination);

 private:
  template <typename Call>
  auto ask(Call call) const;
  [[nodiscard]] std::int64_t copyInside(const InputFile& source, const CopyRange& range);
  void wroteUpTo(std::int64_t end);
  template <typename Rename>
  void takeName(Rename rename);
  void becameFinal(const std::filesystem::path& destination) const;
  void removeTemporary();

  FileSystem& system_;
  std::filesystem::path path_;
  int descriptor_ = -1;
  std::int64_t startedUpTo_ = 0;  // the medium has been set to work up to here
  bool isTemporary_ = true;
};

}  // namespace tessaly
