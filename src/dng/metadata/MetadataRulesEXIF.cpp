#include "dng/DNGError.h"
#include "dng/metadata/MetadataRules.h"
#include "dng/tiff/TIFFEntries.h"
#include "dng/tiff/TIFFTags.h"

namespace tessaly::MetadataRules {
namespace {

// Unlike in the directories of the chain, a later entry of the same tag replaces an earlier one.
TIFFDirectory readEXIFDirectory(const DNGContainer& container, std::int64_t offset) {
  const std::int64_t count = container.uint(offset, 2);
  if (count > maximumEntries) throw DNGError::invalid("EXIF size");
  TIFFDirectory directory;
  directory.offset = offset;
  forEachEntry(container.bytes(), offset, count, [&](const TIFFField& field) {
    if (!hasKnownTypeAndCount(field)) throw DNGError::invalid("EXIF field");
    container.check(field.location, field.size);
    directory.fields[field.tag] = field;
  });
  return directory;
}

}  // namespace

EXIFValues readEXIF(const DirectoryTags& first) {
  const DNGContainer& container = first.container();
  const std::optional<std::int64_t> offset = container.firstInt(first.field(TIFFTag::exifIFD));
  if (!offset) return {};
  const TIFFDirectory exif = readEXIFDirectory(container, *offset);
  EXIFValues values;
  values.exposureSeconds = container.firstNumber(exif.field(TIFFTag::exposureTime));
  values.iso = container.firstInt(exif.field(TIFFTag::isoSpeed));
  values.bodySerial = container.string(exif.field(TIFFTag::bodySerialNumber));
  return values;
}

std::optional<double> readFNumber(const DirectoryTags& first) {
  const DNGContainer& container = first.container();
  const std::optional<std::int64_t> offset = container.firstInt(first.field(TIFFTag::exifIFD));
  if (!offset) return std::nullopt;
  return container.firstNumber(readEXIFDirectory(container, *offset).field(TIFFTag::fNumber));
}

}  // namespace tessaly::MetadataRules
