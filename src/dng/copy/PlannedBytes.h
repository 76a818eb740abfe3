// What a planned copy holds besides samples, at any place: the bytes of the source, values that moved along, patches,
// and zeros between appended blocks.
//
// Holds references; source and plan must outlive it. Safe from several threads.
#pragma once

#include "dng/copy/CopyPlan.h"
#include "dng/copy/SourceImage.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace tessaly {

class PlannedBytes {
 public:
  PlannedBytes(const SourceImage& source, const CopyPlan& plan) : source_(source), plan_(plan) {}

  /// The length of the whole copy.
  [[nodiscard]] std::int64_t length() const { return plan_.length; }

  /// Fills `into` with the bytes from `offset` on. Where samples are written these are the source's own. Throws
  /// truncated("TIFF field at <offset>, length <length>") when the source has become shorter since it was opened, and
  /// std::system_error for an I/O error.
  void read(std::int64_t offset, std::span<std::byte> into) const;

 private:
  void place(const CopyRange& range, std::int64_t offset, std::span<std::byte> into) const;

  const SourceImage& source_;
  const CopyPlan& plan_;
};

}  // namespace tessaly
