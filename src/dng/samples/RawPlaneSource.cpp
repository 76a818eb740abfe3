#include "dng/samples/RawPlaneSource.h"

#include "dng/samples/Linearization.h"
#include "dng/samples/SampleFormat.h"
#include "dng/samples/SampleUnpacker.h"
#include "dng/samples/SegmentLayout.h"
#include "dng/samples/StoredRows.h"

#include <algorithm>

namespace tessaly {
namespace {

// Strips of native samples are as wide as the plane: each is read straight to its place, without a copy in between.
void readNativeStrips(const InputFile& file, const DNGMetadata& metadata, PlaneView plane) {
  const DNGSourceEncoding& encoding = *metadata.sourceEncoding;
  const SegmentLayout layout = SegmentLayout::of(metadata);
  for (std::int64_t index = 0; index < layout.count(); ++index) {
    checkSegment(file, encoding, layout, index);
    const Segment strip = layout.segment(index);
    const auto samples = plane.run({strip.y, 0, strip.rows * metadata.rawWidth});
    const std::span<std::byte> bytes = std::as_writable_bytes(samples);
    const std::size_t got = file.readAt(encoding.offsets[static_cast<std::size_t>(index)], bytes);
    if (got < bytes.size()) throwSegmentTruncated(index);
    linearize(encoding.linearization, samples);
  }
}

// The part of a stored row that holds a wanted run in whole groups of samples: unpacking can only start with one, and
// is slow with a part of one. Empty when they have no column in common.
SampleRun unpackedPart(const SampleRun& stored, const SampleRun& wanted) {
  constexpr std::int64_t group = SampleFormat::samplesPerGroup;
  const std::int64_t first = std::max(wanted.column - stored.column, std::int64_t{0});
  const std::int64_t end = std::min(wanted.column + wanted.count - stored.column, stored.count);
  const std::int64_t start = first / group * group;
  const std::int64_t wholeEnd = std::min((end + group - 1) / group * group, stored.count);
  return {stored.row, stored.column + start, first < end ? wholeEnd - start : 0};
}

}  // namespace

void RawPlaneSource::readInto(PlaneView plane, const WantedSamples& wanted) const {
  const SampleFormat format = SampleFormat::of(metadata_);
  const DNGSourceEncoding& encoding = *metadata_.sourceEncoding;
  if (format.isNative() && !encoding.tileWidth) return readNativeStrips(file_, metadata_, plane);
  forEachStoredRow(file_, metadata_, [&](const SampleRun& stored, std::span<const std::byte> bytes) {
    const auto unpack = [&](const SampleRun& run) {
      const std::int64_t skipped = format.byteCount(run.column - stored.column);
      const std::span<std::uint16_t> samples = plane.run(run);
      unpackSamples(format, bytes.subspan(static_cast<std::size_t>(skipped)), samples);
      linearize(encoding.linearization, samples);
    };
    if (!wanted) return unpack(stored);
    for (const SampleRun& run : wanted(stored.row)) {
      const SampleRun part = unpackedPart(stored, run);
      if (part.count > 0) unpack(part);
    }
  });
}

void RawPlaneSource::forEachRun(const RunVisitor& visit) const {
  const SampleFormat format = SampleFormat::of(metadata_);
  RawSamples samples;
  forEachStoredRow(file_, metadata_, [&](const SampleRun& run, std::span<const std::byte> bytes) {
    samples.resize(static_cast<std::size_t>(run.count));
    unpackSamples(format, bytes, samples);
    linearize(metadata_.sourceEncoding->linearization, samples);
    visit(run, samples);
  });
}

}  // namespace tessaly
