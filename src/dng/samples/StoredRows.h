// The bytes of a raw image, row after row as they are stored, read in slices of about a megabyte.
//
// Segments that follow each other in the file share a slice, so that an image of thousands of small strips or tiles
// costs as few system calls as one of a single strip, while one whose segments are scattered reads no more than them.
// Stateless; safe from several threads.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/RawPlane.h"
#include "dng/samples/SegmentLayout.h"
#include "platform/InputFile.h"

#include <cstddef>
#include <functional>
#include <span>

namespace tessaly {

/// The raw coordinates of the samples of one stored row, and the bytes that hold them; valid during the call only.
using StoredRowVisitor = std::function<void(const SampleRun&, std::span<const std::byte>)>;

/// Visits every stored row that belongs to the image: segment after segment, row after row in each, padding columns
/// and padding rows of tiles left out. Throws truncated("Raw segment <i>") where a segment does not lie in the file or
/// is too short, and std::system_error for an I/O error.
void forEachStoredRow(const InputFile& file, const DNGMetadata& metadata, const StoredRowVisitor& visit);

/// Throws truncated("Raw segment <i>") unless the segment lies in the file and holds all its rows.
void checkSegment(const InputFile& file, const DNGSourceEncoding& encoding, const SegmentLayout& layout,
                  std::int64_t index);

/// The error of a segment that ends too early.
[[noreturn]] void throwSegmentTruncated(std::int64_t index);

}  // namespace tessaly
