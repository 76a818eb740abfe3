// A window that moves down a raw image: the stored rows of one slice and of the rows around it, as far as the rules of
// its user reach. Samples are read and replaced among the stored bytes, one by one, so that nothing is decoded but what
// somebody looks at.
//
// Used by one thread; the source must outlive it.
#pragma once

#include "dng/copy/SourceImage.h"
#include "dng/copy/StoredPatch.h"
#include "dng/samples/InverseLinearization.h"
#include "dng/samples/SampleFormat.h"
#include "dng/samples/SliceLayout.h"
#include "dng/samples/StoredCode.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <vector>

namespace tessaly {

class SampleWindow {
 public:
  /// With `reach` rows above and below the slice. Throws unsupported("Inverse nonmonotonic LinearizationTable").
  SampleWindow(const SourceImage& source, std::int64_t reach, std::int64_t sliceBytes = SliceLayout::usualBytes);

  [[nodiscard]] const SliceLayout& layout() const { return layout_; }
  [[nodiscard]] std::int64_t bitsPerSample() const { return format_.bits; }

  /// Starts again before the first slice.
  void rewind();

  /// Moves on to the slice below. Throws truncated("Raw segment <i>") when the source has become shorter, and
  /// std::system_error for an I/O error.
  void moveTo(const SliceRows& slice);

  /// The sample as the reader gives it, in the rows of the window. Throws invalid("Sample exceeds LinearizationTable").
  [[nodiscard]] std::uint16_t at(std::int64_t x, std::int64_t y) const {
    const std::uint16_t code = codeAt(x, y);
    return table_.empty() ? code : linear(code);
  }

  /// Puts a sample in the place of another. Throws invalid("Sample exceeds source bit depth").
  void replace(std::int64_t x, std::int64_t y, std::uint16_t sample);

  /// The bytes of a piece of the slice, with what was replaced.
  [[nodiscard]] std::span<const std::byte> bytes(const SlicePiece& piece) const;

  /// What was replaced since the last call, in the order in which it was done.
  [[nodiscard]] std::vector<StoredPatch> takePatches();

 private:
  struct Slot {
    SliceRows rows;
    std::vector<std::byte> bytes;
  };

  [[nodiscard]] std::uint16_t codeAt(std::int64_t x, std::int64_t y) const {
    const bool isInSlice = y >= current_->rows.first && y < current_->rows.last;
    const Slot& slot = isInSlice ? *current_ : slotAround(y);
    return loadCode(format_, slot.bytes.data(), layout_.bitInSlice(x, y, slot.rows.first));
  }
  [[nodiscard]] const Slot& slotAround(std::int64_t y) const;
  [[nodiscard]] std::uint16_t linear(std::uint16_t code) const;
  void dropSlotsAbove(std::int64_t row);
  void loadSlotFrom(std::int64_t row);
  void readPiece(const SlicePiece& piece, std::span<std::byte> into) const;
  [[noreturn]] void throwTruncated(const SlicePiece& piece, std::int64_t got) const;

  const SourceImage& source_;
  std::int64_t reach_;
  SliceLayout layout_;
  SampleFormat format_;
  std::span<const std::uint16_t> table_;
  std::optional<InverseLinearization> inverse_;
  std::deque<Slot> slots_;                     // one below the other
  Slot* current_ = nullptr;                    // the slot of the slice
  std::vector<std::vector<std::byte>> spare_;  // memory of slots that were dropped
  std::vector<StoredPatch> patches_;
};

}  // namespace tessaly
