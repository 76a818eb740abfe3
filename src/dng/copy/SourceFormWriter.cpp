#include "dng/copy/SourceFormWriter.h"

#include "dng/DNGError.h"
#include "dng/copy/BytePart.h"
#include "dng/copy/SegmentOrder.h"
#include "dng/copy/SourceBytes.h"
#include "dng/samples/SamplePacker.h"
#include "dng/samples/SampleUnpacker.h"
#include "dng/samples/StoredRows.h"

#include <algorithm>
#include <cassert>

namespace tessaly {
namespace {

// Unchanged bytes between changed rows that are rather written along than copied in a call of their own.
constexpr std::int64_t longestBridge = std::int64_t{64} * 1024;

}  // namespace

SourceFormWriter::SourceFormWriter(const SourceImage& source, ConstPlaneView plane, const ChangedSamples& changed)
    : source_(source),
      plane_(plane),
      changed_(changed),
      format_(SampleFormat::of(source.metadata())),
      layout_(SegmentLayout::of(source.metadata())) {
  requireSegments();
  const std::vector<std::uint16_t>& table = source.encoding().linearization;
  if (!table.empty()) inverse_.emplace(table, source.metadata().bitsPerSample);
  if (!inverse_) requireDepth();
}

// The reader has checked this too; here it guards every write against an encoding that does not belong to the file.
void SourceFormWriter::requireSegments() const {
  const DNGSourceEncoding& encoding = source_.encoding();
  const std::int64_t fileSize = source_.container().file().size();
  for (std::int64_t i = 0; i < layout_.count(); ++i) {
    const auto index = static_cast<std::size_t>(i);
    const std::int64_t needed = layout_.byteCount(i);
    const bool fits = encoding.byteCounts[index] >= needed && encoding.offsets[index] <= fileSize - needed;
    if (!fits) throw DNGError::truncated("Output raw segment");
  }
}

void SourceFormWriter::requireDepth() const {
  const auto runFits = [this](const SampleRun& run) { return fitsDepth(format_, plane_.run(run)); };
  const bool allFit = changed_.all() ? fitsDepth(format_, plane_.samples())
                                     : std::all_of(changed_.runs().begin(), changed_.runs().end(), runFits);
  if (!allFit) throw DNGError::invalid("Sample exceeds source bit depth");
}

// Segments that overlap, as only a damaged file has them, are written one over the other; the verification tells.
void SourceFormWriter::write(PartialFile& file, bool isClone, std::span<std::byte> buffer) {
  assert(std::ssize(buffer) >= layout_.rowBytes());
  isClone_ = isClone;
  for (const std::int64_t index : segmentsInFileOrder(source_.encoding()))
    writeSegment(file, layout_.segment(index), buffer);
  copyUpTo(file, source_.container().file().size(), buffer);
}

void SourceFormWriter::writeSegment(PartialFile& file, const Segment& segment, std::span<std::byte> buffer) {
  const std::int64_t mostRows = std::ssize(buffer) / layout_.rowBytes();
  std::optional<std::int64_t> row = changed_.nextRow(segment, segment.y);
  while (row) {
    const Rows rows{*row, endOfGroup(segment, *row, mostRows)};
    writeRows(file, segment, rows, buffer);
    row = changed_.nextRow(segment, rows.last);
  }
}

// Behind the last changed row of a group that starts with `row` and is written in one piece.
std::int64_t SourceFormWriter::endOfGroup(const Segment& segment, std::int64_t row, std::int64_t mostRows) const {
  const std::int64_t bridge = isClone_ ? 0 : longestBridge / layout_.rowBytes();
  std::int64_t end = row + 1;
  while (true) {
    const std::optional<std::int64_t> next = changed_.nextRow(segment, end);
    if (!next || *next - end > bridge || *next - row >= mostRows) return end;
    end = *next + 1;
  }
}

void SourceFormWriter::writeRows(PartialFile& file, const Segment& segment, const Rows& rows,
                                 std::span<std::byte> buffer) {
  const std::int64_t start = source_.encoding().offsets[static_cast<std::size_t>(segment.index)];
  const std::int64_t offset = start + (rows.first - segment.y) * layout_.rowBytes();
  const std::int64_t length = (rows.last - rows.first) * layout_.rowBytes();
  copyUpTo(file, offset, buffer);
  if (planeHoldsStoredRows()) {
    file.writeAt(offset,
                 std::as_bytes(plane_.run({rows.first, 0, (rows.last - rows.first) * layout_.storedColumns()})));
  } else {
    const std::span<std::byte> bytes = part(buffer, 0, length);
    readRows(file, segment, offset, bytes);
    patchRows(segment, rows, bytes);
    file.writeAt(offset, bytes);
  }
  position_ = std::max(position_, offset + length);
}

// Then the source need not be read again.
bool SourceFormWriter::planeHoldsStoredRows() const {
  return format_.isNative() && !layout_.isTiled() && !inverse_;
}

// Rows that lie over others, in the padding of their tiles for example, are taken from the copy, which has those.
void SourceFormWriter::readRows(PartialFile& file, const Segment& segment, std::int64_t offset,
                                std::span<std::byte> bytes) {
  const InputFile& input = source_.container().file();
  if (input.readAt(offset, bytes) < bytes.size()) throwSegmentTruncated(segment.index);
  if (offset >= position_) return;
  const auto written = std::min(position_ - offset, std::ssize(bytes));
  static_cast<void>(file.readAt(offset, part(bytes, 0, written)));
}

void SourceFormWriter::patchRows(const Segment& segment, const Rows& rows, std::span<std::byte> bytes) {
  const std::int64_t rowBytes = layout_.rowBytes();
  for (std::int64_t row = rows.first; row < rows.last; ++row) {
    const std::span<std::byte> stored = part(bytes, (row - rows.first) * rowBytes, rowBytes);
    changed_.forEachRun(segment, row, [&](const SampleRun& run) { patch(stored, segment, run); });
  }
}

void SourceFormWriter::copyUpTo(PartialFile& file, std::int64_t end, std::span<std::byte> buffer) {
  if (end <= position_) return;
  if (!isClone_) copySourceBytes(file, source_, {position_, position_, end - position_}, buffer);
  position_ = end;
}

// Packing starts on a group boundary, so the samples of the row between that and the run are packed again with it.
void SourceFormWriter::patch(std::span<std::byte> row, const Segment& segment, const SampleRun& run) {
  const std::int64_t first = run.column - segment.x;
  const std::int64_t lead = first % SampleFormat::samplesPerGroup;
  const std::int64_t groupStart = (first - lead) / SampleFormat::samplesPerGroup * format_.bytesPerGroup();
  const std::span<const std::uint16_t> samples = plane_.run(run);
  const std::span<std::byte> bytes = part(row, groupStart, format_.byteCount(lead + run.count));
  if (lead == 0 && !inverse_) return packSamples(format_, samples, bytes);
  codes_.resize(static_cast<std::size_t>(lead) + samples.size());
  unpackSamples(format_, bytes, codes_);
  replaceCodes(samples, std::span(codes_).last(samples.size()));
  packSamples(format_, codes_, bytes);
}

void SourceFormWriter::replaceCodes(std::span<const std::uint16_t> samples, std::span<std::uint16_t> codes) const {
  for (std::size_t i = 0; i < samples.size(); ++i)
    codes[i] = inverse_ ? inverse_->code(samples[i], codes[i]) : samples[i];
}

}  // namespace tessaly
