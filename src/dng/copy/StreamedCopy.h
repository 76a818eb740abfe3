// Makes a copy in the source form while the source streams by in slices: samples are replaced among the stored bytes,
// which are written at once. Besides a few slices nothing of the image is in memory. The bytes are the same as those
// that DNGWriter::writeCopy writes for a plane with the same samples.
//
// Stateless; safe from several threads for different destinations.
#pragma once

#include "dng/copy/SampleWindow.h"
#include "dng/copy/SourceImage.h"
#include "platform/FileSystem.h"

#include <cstdint>
#include <filesystem>
#include <functional>

namespace tessaly {

/// Replaces samples in the rows of a slice, looking at the rows around it; called for the slices from top to bottom.
using SliceEdit = std::function<void(SampleWindow& samples, const SliceRows& slice)>;

/// When a copy is read back: when it is complete, or on a second thread behind the writer where the file system keeps
/// everything in memory, so that no medium could answer differently later. Elsewhere it is always afterwards.
enum class Verification { afterwards, behindTheWriter };

struct StreamedCopyRequest {
  std::filesystem::path destination;
  SliceEdit edit;
  std::int64_t reach = 0;       ///< how many rows above and below a slice the edit looks at
  bool mayExceedDepth = false;  ///< then the edit is made twice: the first time to see whether its samples fit
  Verification verification = Verification::afterwards;
  std::int64_t sliceBytes = SliceLayout::usualBytes;
};

/// Whether a source is copied in the source form and no two samples share bytes: then a copy can be streamed.
[[nodiscard]] bool canBeStreamed(const DNGMetadata& metadata);

/// Throws what reading every sample of an image would throw: truncated("Raw segment <i>") and
/// invalid("Sample exceeds LinearizationTable"). Only a table that is shorter than the codes can count makes it read.
void requireReadableSamples(const SourceImage& source);

/// Makes the copy. Throws, in this order, what CheckedCopyRequest and SourceFormWriter throw before anything is
/// written, then as writeCopy does.
void streamCopy(const SourceImage& source, const StreamedCopyRequest& request, FileSystem& system);

}  // namespace tessaly
