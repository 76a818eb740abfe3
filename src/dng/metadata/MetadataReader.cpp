#include "dng/metadata/MetadataReader.h"

#include "dng/metadata/DirectoryTags.h"
#include "dng/metadata/MetadataRules.h"
#include "dng/tiff/TIFFTags.h"
#include "platform/Text.h"

#include <numeric>
#include <utility>

namespace tessaly {
namespace {

DNGMetadata emptyRecord(const DirectoryTags& raw) {
  DNGMetadata metadata;
  metadata.sourceEncoding.emplace();
  metadata.sourceEncoding->littleEndian = raw.container().little();
  metadata.sourceEncoding->ifdOffset = raw.directory().offset;
  metadata.sourceEncoding->parentPointer = raw.directory().pointer;
  return metadata;
}

std::string readModel(const DirectoryTags& first) {
  if (auto unique = first.string(TIFFTag::uniqueCameraModel)) return *unique;
  if (auto model = first.string(TIFFTag::model)) return *model;
  return "Unknown Camera";
}

std::optional<std::string> firstNonEmptyTrimmed(std::initializer_list<std::optional<std::string>> candidates) {
  for (const std::optional<std::string>& candidate : candidates) {
    std::string text = trimmed(candidate.value_or(""));
    if (!text.empty()) return text;
  }
  return std::nullopt;
}

void readIdentity(const DirectoryTags& first, const DirectoryTags& raw, DNGMetadata& metadata) {
  const MetadataRules::EXIFValues exif = MetadataRules::readEXIF(first);
  metadata.exposureSeconds = exif.exposureSeconds;
  metadata.iso = exif.iso;
  metadata.make = first.string(TIFFTag::make);
  metadata.model = readModel(first);
  metadata.cameraSerial = firstNonEmptyTrimmed(
      {first.string(TIFFTag::cameraSerialNumber), raw.string(TIFFTag::cameraSerialNumber), exif.bodySerial});
}

// The offsets lie within the file, so none is negative and the sum of the byte counts stays within 64 bits.
void sumUpSegments(DNGMetadata& metadata) {
  const DNGSourceEncoding& encoding = *metadata.sourceEncoding;
  metadata.rawOffset = static_cast<std::uint64_t>(encoding.offsets.front());
  metadata.rawByteCount = std::accumulate(encoding.byteCounts.begin(), encoding.byteCounts.end(), std::int64_t{0});
}

}  // namespace

DNGMetadata parseMetadata(const DNGContainer& container) {
  const DirectoryTags raw(container, container.rawDirectory());
  const DirectoryTags first(container, container.directories().front());
  DNGMetadata metadata = emptyRecord(raw);
  MetadataRules::readFormat(raw, metadata);
  MetadataRules::readSegments(raw, metadata);
  MetadataRules::readSampleCoding(raw, metadata);
  MetadataRules::readAreas(raw, metadata);
  MetadataRules::readLevels(raw, metadata);
  readIdentity(first, raw, metadata);
  sumUpSegments(metadata);
  metadata.sourceEncoding->maskedAreas = raw.ints(TIFFTag::maskedAreas);
  return metadata;
}

std::optional<double> parseFNumber(const DNGContainer& container) {
  return MetadataRules::readFNumber(DirectoryTags(container, container.directories().front()));
}

}  // namespace tessaly
