// Writes the bytes of a source, slice after slice, with the samples that an edit replaces in each.
//
// Used by one thread; holds references to everything it is given.
#pragma once

#include "dng/copy/SampleWindow.h"
#include "dng/copy/StreamedCopy.h"
#include "dng/copy/StretchVerifier.h"
#include "platform/PartialFile.h"

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace tessaly {

/// Is told of a part of the copy that will not be written to any more.
using StretchHandler = std::function<void(CopiedStretch)>;

class StreamedWriter {
 public:
  /// Throws unsupported("Inverse nonmonotonic LinearizationTable").
  StreamedWriter(const SourceImage& source, const StreamedCopyRequest& request);

  /// Makes the edit without writing. Throws invalid("Sample exceeds source bit depth") and what reading the source
  /// throws.
  void rehearse();

  /// Fills a new file and gives the stretch that `settled`, which may be empty, has not been told of. Throws
  /// DNGError::truncated when the source has become shorter and std::system_error when the system fails.
  [[nodiscard]] CopiedStretch write(PartialFile& file, const StretchHandler& settled);

 private:
  void forEachSlice(const std::function<void(const SliceRows&)>& visit);
  void writeSlice(const SliceRows& slice);
  void writePiece(const SlicePiece& piece);
  void writeChanges(const SlicePiece& piece);
  void copyGapsUpTo(std::int64_t end);

  const SourceImage& source_;
  const SliceEdit& edit_;
  SampleWindow window_;
  std::vector<CopyRange> gaps_;  // what no slice holds, by place
  bool isInOrder_;               // the slices lie in the file from top to bottom
  // Of one run:
  PartialFile* file_ = nullptr;
  bool isClone_ = false;
  std::size_t nextGap_ = 0;
  std::int64_t position_ = 0;         // behind the last byte of the slices so far
  std::vector<StoredPatch> ofSlice_;  // by place
  std::vector<StoredPatch> sinceSettled_;
  std::vector<std::byte> buffer_;
};

}  // namespace tessaly
