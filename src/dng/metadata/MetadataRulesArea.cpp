#include "dng/DNGError.h"
#include "dng/metadata/MetadataRules.h"
#include "dng/tiff/TIFFTags.h"

#include <array>
#include <cmath>

namespace tessaly::MetadataRules {
namespace {

constexpr std::array cropTags{TIFFTag::defaultCropOrigin, TIFFTag::defaultCropSize};

RawRectangle readActiveArea(const DirectoryTags& raw, const DNGMetadata& metadata) {
  if (!raw.has(TIFFTag::activeArea)) return {0, 0, metadata.rawWidth, metadata.rawHeight};
  if (raw.count(TIFFTag::activeArea) != 4) throw DNGError::invalid("ActiveArea count");
  const std::vector<std::int64_t> edges = raw.ints(TIFFTag::activeArea);  // top, left, bottom, right
  return {edges[1], edges[0], edges[3] - edges[1], edges[2] - edges[0]};
}

void requireIntegral(const DirectoryTags& raw, std::int64_t tag) {
  raw.container().forEachNumber(raw.field(tag), [](double value) {
    if (std::trunc(value) != value) throw DNGError::unsupported("Fractional DefaultCrop is not supported yet");
  });
}

void requirePair(const DirectoryTags& raw, std::int64_t tag) {
  if (raw.has(tag) && raw.count(tag) != 2) throw DNGError::invalid("DefaultCrop count");
}

RawRectangle readCrop(const DirectoryTags& raw, const RawRectangle& active) {
  for (const std::int64_t tag : cropTags)
    raw.container().checkNumbers(raw.field(tag));
  for (const std::int64_t tag : cropTags)
    requireIntegral(raw, tag);
  for (const std::int64_t tag : cropTags)
    requirePair(raw, tag);
  RawRectangle crop = active;
  if (raw.has(TIFFTag::defaultCropOrigin)) {
    const std::vector<std::int64_t> origin = raw.ints(TIFFTag::defaultCropOrigin);
    crop.x += origin[0];
    crop.y += origin[1];
  }
  if (raw.has(TIFFTag::defaultCropSize)) {
    const std::vector<std::int64_t> size = raw.ints(TIFFTag::defaultCropSize);
    crop.width = size[0];
    crop.height = size[1];
  }
  return crop;
}

// The sides come from 32-bit numbers, so the sums stay far within 64 bits.
bool liesWithin(const RawRectangle& inner, const RawRectangle& outer) {
  return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.width <= outer.x + outer.width &&
         inner.y + inner.height <= outer.y + outer.height;
}

void requireInImage(const RawRectangle& area, const DNGMetadata& metadata) {
  const bool acceptable =
      area.width >= 1 && area.height >= 1 && liesWithin(area, {0, 0, metadata.rawWidth, metadata.rawHeight});
  if (!acceptable) throw DNGError::invalid("ActiveArea/DefaultCrop bounds");
}

}  // namespace

void readAreas(const DirectoryTags& raw, DNGMetadata& metadata) {
  const RawRectangle active = readActiveArea(raw, metadata);
  const RawRectangle crop = readCrop(raw, active);
  requireInImage(active, metadata);
  requireInImage(crop, metadata);
  if (!liesWithin(crop, active)) throw DNGError::invalid("Crop outside ActiveArea");
  metadata.activeX = active.x;
  metadata.activeY = active.y;
  metadata.activeWidth = active.width;
  metadata.activeHeight = active.height;
  metadata.sourceEncoding->activeArea = active;
  metadata.sourceEncoding->crop = crop;
}

}  // namespace tessaly::MetadataRules
