#include "dng/copy/ReencodedDirectory.h"

#include "dng/tiff/TIFFTags.h"
#include "dng/tiff/TIFFTypes.h"

#include <algorithm>
#include <array>

namespace tessaly {
namespace {

constexpr std::array droppedTags{
    TIFFTag::tileWidth,          TIFFTag::tileLength,     TIFFTag::tileOffsets,       TIFFTag::tileByteCounts,
    TIFFTag::linearizationTable, TIFFTag::rawImageDigest, TIFFTag::newRawImageDigest,
};

bool isDropped(std::int64_t tag) {
  return std::find(droppedTags.begin(), droppedTags.end(), tag) != droppedTags.end();
}

}  // namespace

DirectoryBuilder reencodedDirectory(const SourceImage& source, std::int64_t rawSegment) {
  const DNGMetadata& metadata = source.metadata();
  DirectoryBuilder directory(source.container().little());
  for (const auto& [tag, field] : source.rawDirectory().fields) {
    if (!isDropped(tag)) directory.carryWithValue(source.container().bytes(), field);
  }
  directory.putInteger(TIFFTag::bitsPerSample, TIFFType::shortInteger, 16);
  directory.putInteger(TIFFTag::compression, TIFFType::shortInteger, 1);
  directory.putInteger(TIFFTag::fillOrder, TIFFType::shortInteger, 1);
  directory.putInteger(TIFFTag::stripOffsets, TIFFType::longInteger, rawSegment);
  directory.putInteger(TIFFTag::rowsPerStrip, TIFFType::longInteger, metadata.rawHeight);
  directory.putInteger(TIFFTag::stripByteCounts, TIFFType::longInteger, 2 * metadata.pixelCount());
  if (!directory.has(TIFFTag::whiteLevel)) {
    directory.putInteger(TIFFTag::whiteLevel, TIFFType::longInteger, metadata.whiteLevel);
  }
  return directory;
}

}  // namespace tessaly
