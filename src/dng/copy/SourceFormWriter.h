// Writes the bytes of a source with samples packed back in place, in the source's own encoding. All bits that are not
// changed samples stay what they are: padding of rows and tiles, gaps, tail.
//
// Used by one thread; holds references to everything it is given.
#pragma once

#include "dng/PlaneView.h"
#include "dng/copy/ChangedSamples.h"
#include "dng/copy/SourceImage.h"
#include "dng/samples/InverseLinearization.h"
#include "dng/samples/SampleFormat.h"
#include "dng/samples/SegmentLayout.h"
#include "platform/PartialFile.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tessaly {

class SourceFormWriter {
 public:
  /// Throws, before anything is written, what cannot be written:
  /// truncated("Output raw segment") for a segment that is too short for its samples,
  /// unsupported("Inverse nonmonotonic LinearizationTable"), and invalid("Sample exceeds source bit depth").
  SourceFormWriter(const SourceImage& source, ConstPlaneView plane, const ChangedSamples& changed);

  /// The way back through the source's table; null without one.
  [[nodiscard]] const InverseLinearization* inverse() const { return inverse_ ? &*inverse_ : nullptr; }

  /// Fills a file with the source's bytes and the changed samples; only with the latter when the file is a clone of the
  /// source. `buffer` must hold a stored row. Throws DNGError::truncated when the source has become shorter and
  /// std::system_error when the system fails.
  void write(PartialFile& file, bool isClone, std::span<std::byte> buffer);

 private:
  struct Rows {
    std::int64_t first = 0;
    std::int64_t last = 0;  // excluded
  };

  [[nodiscard]] bool planeHoldsStoredRows() const;
  void requireSegments() const;
  void requireDepth() const;
  void writeSegment(PartialFile& file, const Segment& segment, std::span<std::byte> buffer);
  [[nodiscard]] std::int64_t endOfGroup(const Segment& segment, std::int64_t row, std::int64_t mostRows) const;
  void writeRows(PartialFile& file, const Segment& segment, const Rows& rows, std::span<std::byte> buffer);
  void readRows(PartialFile& file, const Segment& segment, std::int64_t offset, std::span<std::byte> bytes);
  void patchRows(const Segment& segment, const Rows& rows, std::span<std::byte> bytes);
  void copyUpTo(PartialFile& file, std::int64_t end, std::span<std::byte> buffer);
  void patch(std::span<std::byte> row, const Segment& segment, const SampleRun& run);
  void replaceCodes(std::span<const std::uint16_t> samples, std::span<std::uint16_t> codes) const;

  const SourceImage& source_;
  ConstPlaneView plane_;
  const ChangedSamples& changed_;
  SampleFormat format_;
  SegmentLayout layout_;
  std::optional<InverseLinearization> inverse_;
  std::vector<std::uint16_t> codes_;  // of the run at hand
  std::int64_t position_ = 0;         // the copy holds the source's bytes up to here
  bool isClone_ = false;
};

}  // namespace tessaly
