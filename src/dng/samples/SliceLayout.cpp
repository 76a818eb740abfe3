#include "dng/samples/SliceLayout.h"

#include <algorithm>
#include <cassert>

namespace tessaly {
namespace {

// Whoever keeps something for each row keeps little even where rows are short.
constexpr std::int64_t tallestSlice = 1024;

std::int64_t rowsOfSlice(const SegmentLayout& segments, std::int64_t rawHeight, std::int64_t sliceBytes) {
  const std::int64_t wanted = sliceBytes / (segments.across() * segments.rowBytes());
  const std::int64_t most = segments.isTiled() ? segments.segmentHeight() : rawHeight;
  return std::clamp<std::int64_t>(wanted, 1, std::min(most, tallestSlice));
}

// A piece that goes on where the one before ends, in the file and in memory, becomes part of it.
void append(std::vector<SlicePiece>& pieces, const SlicePiece& piece) {
  if (!pieces.empty()) {
    SlicePiece& before = pieces.back();
    if (before.offset + before.length == piece.offset && before.place + before.length == piece.place) {
      before.length += piece.length;
      return;
    }
  }
  pieces.push_back(piece);
}

}  // namespace

SliceLayout::SliceLayout(const DNGMetadata& metadata, std::int64_t sliceBytes)
    : metadata_(metadata),
      segments_(SegmentLayout::of(metadata)),
      isTiled_(segments_.isTiled()),
      bits_(metadata.bitsPerSample),
      mostRows_(rowsOfSlice(segments_, metadata.rawHeight, sliceBytes)) {}

SliceRows SliceLayout::sliceFrom(std::int64_t row) const {
  assert(row >= 0 && row < metadata_.rawHeight);
  const std::int64_t height = segments_.segmentHeight();
  const std::int64_t end = isTiled_ ? row / height * height + height : metadata_.rawHeight;
  return {row, std::min({row + mostRows_, end, metadata_.rawHeight})};
}

std::int64_t SliceLayout::offset(std::int64_t segment) const {
  return metadata_.sourceEncoding->offsets[static_cast<std::size_t>(segment)];
}

std::vector<SlicePiece> SliceLayout::pieces(const SliceRows& rows) const {
  std::vector<SlicePiece> pieces;
  const std::int64_t height = segments_.segmentHeight();
  for (std::int64_t row = rows.first; row < rows.last;) {
    const std::int64_t down = row / height;
    const std::int64_t end = std::min(rows.last, (down + 1) * height);
    for (std::int64_t across = 0; across < segments_.across(); ++across) {
      const std::int64_t segment = down * segments_.across() + across;
      append(pieces,
             {segment, offset(segment) + (row - down * height) * segments_.rowBytes(),
              across * blockBytes() + (row - rows.first) * segments_.rowBytes(), (end - row) * segments_.rowBytes()});
    }
    row = end;
  }
  return pieces;
}

bool SliceLayout::endsSegments(const SliceRows& rows) const {
  const bool isLastOfSegment = rows.last == metadata_.rawHeight || rows.last % segments_.segmentHeight() == 0;
  return segments_.across() == 1 || isLastOfSegment;
}

std::int64_t SliceLayout::bitInFile(std::int64_t x, std::int64_t y) const {
  const std::int64_t across = x / segments_.storedColumns(), down = y / segments_.segmentHeight();
  const std::int64_t row =
      offset(down * segments_.across() + across) + (y - down * segments_.segmentHeight()) * segments_.rowBytes();
  return 8 * row + (x - across * segments_.storedColumns()) * bits_;
}

}  // namespace tessaly
