#include "dng/tiff/DNGContainer.h"

#include "dng/DNGError.h"
#include "dng/RawLimits.h"
#include "dng/tiff/DirectoryWalk.h"
#include "dng/tiff/Photometric.h"
#include "dng/tiff/TIFFTags.h"
#include "dng/tiff/TIFFTypes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace tessaly {
namespace {

bool isRawImage(std::int64_t photometric) {
  return photometric == Photometric::blackIsZero || photometric == Photometric::cfa ||
         photometric == Photometric::linearRaw;
}

}  // namespace

DNGContainer::DNGContainer(const std::filesystem::path& url) : bytes_(url), directories_(walkDirectories(bytes_)) {
  checkVersion();
}

void DNGContainer::checkVersion() const {
  const TIFFField* const version = directories_.empty() ? nullptr : directories_[0].field(TIFFTag::dngVersion);
  const bool present = version != nullptr && version->type == TIFFType::byte && version->count == 4;
  if (!present) throw DNGError::invalid("Missing DNGVersion");
  const std::vector<double> values = numbers(version);
  if (values[0] != 1.0) throw DNGError::unsupported(fmt::format("DNGVersion [{:.1f}]", fmt::join(values, ", ")));
}

const TIFFDirectory& DNGContainer::rawDirectory() const {
  const TIFFDirectory* chosen = nullptr;
  std::vector<const TIFFDirectory*> candidates;
  for (const TIFFDirectory& directory : directories_) {
    if (isRawCandidate(directory)) candidates.push_back(&directory);
  }
  for (const TIFFDirectory* candidate : candidates) {
    if (chosen == nullptr || isLarger(*candidate, *chosen)) chosen = candidate;
  }
  if (chosen == nullptr) throw DNGError::invalid("No main raw image IFD");
  return *chosen;
}

bool DNGContainer::isRawCandidate(const TIFFDirectory& directory) const {
  if (firstIntOrZero(directory, TIFFTag::newSubfileType) != 0) return false;
  if (!isRawImage(firstIntOrZero(directory, TIFFTag::photometricInterpretation))) return false;
  return directory.field(TIFFTag::imageWidth) != nullptr && directory.field(TIFFTag::imageLength) != nullptr;
}

bool DNGContainer::isLarger(const TIFFDirectory& candidate, const TIFFDirectory& current) const {
  const std::array<std::int64_t, 4> sides{
      firstIntOrZero(current, TIFFTag::imageWidth), firstIntOrZero(current, TIFFTag::imageLength),
      firstIntOrZero(candidate, TIFFTag::imageWidth), firstIntOrZero(candidate, TIFFTag::imageLength)};
  if (!std::all_of(sides.begin(), sides.end(), isRawSide)) throw DNGError::invalid("Raw dimensions");
  return sides[2] * sides[3] > sides[0] * sides[1];
}

std::int64_t DNGContainer::firstIntOrZero(const TIFFDirectory& directory, std::int64_t tag) const {
  return firstInt(directory.field(tag)).value_or(0);
}

}  // namespace tessaly
