#include "dng/copy/StreamedWriter.h"

#include "dng/copy/SegmentOrder.h"
#include "dng/copy/SourceBytes.h"

#include <algorithm>
#include <utility>

namespace tessaly {
namespace {

// What a gap passes through where the system does not copy it inside.
constexpr std::size_t gapBuffer = std::size_t{64} * 1024;

// Changes of a clone that are nearer than a block are written together: the block is the copy's own then anyway.
constexpr std::int64_t blockSize = 4096;

// Everything but the rows of the image.
std::vector<CopyRange> gapsOf(const SourceImage& source) {
  const SegmentLayout segments = SegmentLayout::of(source.metadata());
  std::vector<CopyRange> gaps;
  std::int64_t position = 0;
  const auto addGap = [&](std::int64_t end) {
    if (end > position) gaps.push_back({position, position, end - position});
  };
  for (const std::int64_t index : segmentsInFileOrder(source.encoding())) {
    const std::int64_t start = source.encoding().offsets[static_cast<std::size_t>(index)];
    addGap(start);
    position = start + segments.segment(index).rows * segments.rowBytes();
  }
  addGap(source.container().file().size());
  return gaps;
}

bool liesInOrder(const DNGSourceEncoding& encoding) {
  return std::is_sorted(encoding.offsets.begin(), encoding.offsets.end());
}

}  // namespace

StreamedWriter::StreamedWriter(const SourceImage& source, const StreamedCopyRequest& request)
    : source_(source),
      edit_(request.edit),
      window_(source, request.reach, request.sliceBytes),
      gaps_(gapsOf(source)),
      isInOrder_(liesInOrder(source.encoding())) {}

void StreamedWriter::forEachSlice(const std::function<void(const SliceRows&)>& visit) {
  window_.rewind();
  for (std::int64_t row = 0; row < source_.metadata().rawHeight;) {
    const SliceRows slice = window_.layout().sliceFrom(row);
    window_.moveTo(slice);
    edit_(window_, slice);
    visit(slice);
    row = slice.last;
  }
}

void StreamedWriter::rehearse() {
  forEachSlice([this](const SliceRows&) { ofSlice_ = window_.takePatches(); });
}

CopiedStretch StreamedWriter::write(PartialFile& file, const StretchHandler& settled) {
  const InputFile& input = source_.container().file();
  file_ = &file;
  isClone_ = file.cloneFrom(input);
  if (!isClone_) file.reserve(input.size());
  buffer_.resize(gapBuffer);
  forEachSlice([&](const SliceRows& slice) {
    writeSlice(slice);
    if (settled && isInOrder_ && window_.layout().endsSegments(slice)) {
      settled({position_, std::exchange(sinceSettled_, {})});
    }
  });
  copyGapsUpTo(input.size());
  return {input.size(), std::exchange(sinceSettled_, {})};
}

void StreamedWriter::writeSlice(const SliceRows& slice) {
  ofSlice_ = window_.takePatches();
  std::sort(ofSlice_.begin(), ofSlice_.end());
  for (const SlicePiece& piece : window_.layout().pieces(slice)) {
    copyGapsUpTo(piece.offset);
    writePiece(piece);
    position_ = std::max(position_, piece.offset + piece.length);
  }
  sinceSettled_.insert(sinceSettled_.end(), ofSlice_.begin(), ofSlice_.end());
}

void StreamedWriter::writePiece(const SlicePiece& piece) {
  if (isClone_) {
    writeChanges(piece);
  } else {
    file_->writeAt(piece.offset, window_.bytes(piece));
  }
}

void StreamedWriter::writeChanges(const SlicePiece& piece) {
  const std::int64_t end = piece.offset + piece.length;
  const auto isBefore = [](const StoredPatch& patch, std::int64_t byte) { return patch.bit() / 8 < byte; };
  auto patch = std::lower_bound(ofSlice_.begin(), ofSlice_.end(), piece.offset, isBefore);
  const auto last = std::lower_bound(patch, ofSlice_.end(), end, isBefore);
  while (patch != last) {
    const std::int64_t first = patch->bit() / 8;
    std::int64_t behind = first;
    for (; patch != last && patch->bit() / 8 <= behind + blockSize; ++patch)
      behind = std::min((patch->bit() + window_.bitsPerSample() + 7) / 8, end);
    file_->writeAt(first, window_.bytes(piece).subspan(static_cast<std::size_t>(first - piece.offset),
                                                       static_cast<std::size_t>(behind - first)));
  }
}

void StreamedWriter::copyGapsUpTo(std::int64_t end) {
  for (; nextGap_ < gaps_.size() && gaps_[nextGap_].from < end; ++nextGap_) {
    if (!isClone_) copySourceBytes(*file_, source_, gaps_[nextGap_], buffer_);
  }
}

}  // namespace tessaly
