// Compares a copy, stretch after stretch, with the bytes of its source and the samples that were replaced: equal bytes
// under an equal description are equal samples, so that nothing need be decoded.
//
// Used by one thread at a time; the source must outlive it.
#pragma once

#include "dng/copy/PlannedBytes.h"
#include "dng/copy/StoredPatch.h"
#include "dng/samples/SampleFormat.h"
#include "platform/InputFile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace tessaly {

/// A part of a copy that is complete: from the end of the one before up to, but excluding, `end`.
struct CopiedStretch {
  std::int64_t end = 0;
  std::vector<StoredPatch> patches;  ///< whose first bytes lie in it
};

class StretchVerifier {
 public:
  /// Opens the copy. Errors of reading it leave, here and later, as DNGError::Case::file with its name.
  StretchVerifier(std::filesystem::path copy, const SourceImage& source, const CopyPlan& plan);

  /// Whether the copy is what it should be in this stretch and in all before. Throws truncated("TIFF field at
  /// <offset>, length <length>") when the source has become shorter and std::system_error when it cannot be read.
  [[nodiscard]] bool matches(CopiedStretch stretch);

 private:
  using Patch = std::vector<StoredPatch>::const_iterator;

  [[nodiscard]] std::int64_t endOfSlice(Patch patch, Patch last, std::int64_t endOfStretch) const;
  [[nodiscard]] Patch apply(Patch patch, Patch last, std::int64_t end);
  [[nodiscard]] bool foundIsPlanned(std::int64_t length);
  [[nodiscard]] std::int64_t endOf(const StoredPatch& patch) const;

  std::filesystem::path path_;
  InputFile copy_;
  PlannedBytes plan_;
  SampleFormat format_;
  std::vector<std::byte> planned_;
  std::vector<std::byte> found_;
  std::int64_t position_ = 0;  // everything before is as it should be
  bool matches_ = true;
};

}  // namespace tessaly
