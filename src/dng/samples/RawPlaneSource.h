// The raw samples of an open file, streamed: at no time is more than about a megabyte of the file in memory, and no
// plane is needed to look at the samples.
//
//   RawPlaneSource(file, metadata).forEachRun([&](const SampleRun& run, std::span<const std::uint16_t> samples) {…});
//
// Both the file and the record must outlive the source; the record must have been read from this very file
// (parseMetadata) and be uncompressed. A source is used by one thread at a time. Every function throws
// truncated("Raw segment <i>") where the file ends too early, invalid("Sample exceeds LinearizationTable"), and
// std::system_error for an I/O error.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/PlaneView.h"
#include "dng/RawPlane.h"
#include "platform/InputFile.h"

#include <cstdint>
#include <functional>
#include <span>

namespace tessaly {

class RawPlaneSource {
 public:
  /// The samples of one stored row of one segment, padding left out; valid during the call only.
  using RunVisitor = std::function<void(const SampleRun&, std::span<const std::uint16_t>)>;

  RawPlaneSource(const InputFile& file, const DNGMetadata& metadata) : file_(file), metadata_(metadata) {}

  /// Fills a plane of this image; with `wanted` only the wanted samples of it, and what the others then are is
  /// unspecified. A row may be asked for several times.
  void readInto(PlaneView plane, const WantedSamples& wanted = nullptr) const;

  /// Visits every sample of the image once, after linearization: segment after segment, row after row in each.
  void forEachRun(const RunVisitor& visit) const;

 private:
  const InputFile& file_;
  const DNGMetadata& metadata_;
};

}  // namespace tessaly
