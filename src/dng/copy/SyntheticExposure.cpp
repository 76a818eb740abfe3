#include "dng/copy/SyntheticExposure.h"

#include "dng/DNGError.h"
#include "dng/tiff/TIFFEntries.h"
#include "dng/tiff/TIFFTags.h"

#include <cmath>

namespace tessaly {
namespace {

constexpr double longestExposure = 4000.0;  // seconds; the numerator below stays within 32 bits
constexpr std::int64_t microseconds = 1'000'000;

// The offset and the entry count of a directory whose entries lie in the file.
struct EXIFPlace {
  std::int64_t offset = 0;
  std::int64_t entries = 0;
};

std::optional<EXIFPlace> findEXIF(const DNGContainer& container) {
  const std::optional<std::int64_t> offset =
      container.firstInt(container.directories().front().field(TIFFTag::exifIFD));
  const std::int64_t size = container.file().size();
  if (!offset || *offset < 0 || *offset > size - 2) return std::nullopt;
  const std::int64_t entries = container.uint(*offset, 2);
  if (entries > maximumEntries || *offset + 2 + entryBlockSize(entries) > size) return std::nullopt;
  return EXIFPlace{*offset, entries};
}

EXIFPlace requireEXIF(const DNGContainer& container) {
  const std::optional<EXIFPlace> place = findEXIF(container);
  if (!place) throw DNGError::invalid("EXIF directory size");
  return *place;
}

}  // namespace

void requireExposureRange(std::optional<double> seconds) {
  if (!seconds) return;
  const bool isInRange = std::isfinite(*seconds) && *seconds >= 0.0 && *seconds <= longestExposure;
  if (!isInRange) throw DNGError::invalid("Synthetic exposure range");
}

DirectoryBuilder exposureDirectory(const DNGContainer& container, double seconds) {
  const EXIFPlace place = requireEXIF(container);
  DirectoryBuilder directory(container.little());
  std::vector<TIFFField> fields;
  forEachEntry(container.bytes(), place.offset, place.entries,
               [&](const TIFFField& field) { fields.push_back(field); });
  for (const TIFFField& field : fields)
    directory.carry(container.bytes(), field);
  const auto numerator = static_cast<std::int64_t>(std::llround(seconds * static_cast<double>(microseconds)));
  directory.putRational(TIFFTag::exposureTime, numerator, microseconds);
  return directory;
}

std::int64_t nextOfEXIF(const DNGContainer& container) {
  const EXIFPlace place = requireEXIF(container);
  return container.uint(place.offset + 2 + entryBlockSize(place.entries) - 4, 4);
}

}  // namespace tessaly
