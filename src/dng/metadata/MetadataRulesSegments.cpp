#include "dng/DNGError.h"
#include "dng/RawLimits.h"
#include "dng/metadata/MetadataRules.h"
#include "dng/samples/SegmentLayout.h"
#include "dng/tiff/TIFFTags.h"

namespace tessaly::MetadataRules {
namespace {

constexpr std::int64_t uncompressed = 1;

struct SegmentTags {
  std::int64_t offsets;
  std::int64_t byteCounts;
};

SegmentTags segmentTags(bool tiled) {
  if (tiled) return {TIFFTag::tileOffsets, TIFFTag::tileByteCounts};
  return {TIFFTag::stripOffsets, TIFFTag::stripByteCounts};
}

// Judges the number of offsets before any is read into memory; gives the layout that they must fill.
SegmentLayout readShape(const DirectoryTags& raw, const SegmentTags& tags, DNGMetadata& metadata) {
  const std::int64_t offsets = raw.count(tags.offsets);
  const std::int64_t byteCounts = raw.count(tags.byteCounts);
  metadata.rowsPerStrip = raw.value(TIFFTag::rowsPerStrip, metadata.rawHeight);
  const std::int64_t tileWidth = raw.value(TIFFTag::tileWidth, 0);
  const std::int64_t tileHeight = raw.value(TIFFTag::tileLength, 0);
  const bool arraysMatch = metadata.rowsPerStrip >= 1 && offsets > 0 && offsets == byteCounts;
  if (!arraysMatch) throw DNGError::invalid("Raw segment arrays");
  if (tags.offsets == TIFFTag::tileOffsets) {
    if (!isRawSide(tileWidth) || !isRawSide(tileHeight)) throw DNGError::invalid("Tile dimensions");
    metadata.sourceEncoding->tileWidth = tileWidth;
    metadata.sourceEncoding->tileHeight = tileHeight;
  }
  SegmentLayout layout = SegmentLayout::of(metadata);
  if (layout.count() != offsets) throw DNGError::invalid("Raw segment count");
  return layout;
}

// How long a compressed segment must be only its decoder could tell.
void checkSegments(const DNGContainer& container, const SegmentLayout& layout, const DNGMetadata& metadata) {
  const DNGSourceEncoding& encoding = *metadata.sourceEncoding;
  for (std::size_t i = 0; i < encoding.offsets.size(); ++i) {
    container.check(encoding.offsets[i], encoding.byteCounts[i]);
    const bool longEnough = metadata.compression != uncompressed ||
                            encoding.byteCounts[i] >= layout.byteCount(static_cast<std::int64_t>(i));
    if (!longEnough) throw DNGError::truncated("Raw segment byte count");
  }
}

}  // namespace

void readSegments(const DirectoryTags& raw, DNGMetadata& metadata) {
  const SegmentTags tags = segmentTags(raw.has(TIFFTag::tileOffsets));
  const SegmentLayout layout = readShape(raw, tags, metadata);
  metadata.sourceEncoding->offsets = raw.ints(tags.offsets);
  metadata.sourceEncoding->byteCounts = raw.ints(tags.byteCounts);
  checkSegments(raw.container(), layout, metadata);
}

}  // namespace tessaly::MetadataRules
