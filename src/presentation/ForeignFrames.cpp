#include "presentation/ForeignFrames.h"

#include "dng/DNGReader.h"
#include "localization/Localization.h"
#include "platform/NaturalOrder.h"
#include "platform/Text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace tessaly::ForeignFrames {
namespace {

using Paths = std::vector<std::filesystem::path>;

/// A line with more of them would not be read.
constexpr std::size_t mostNames = 20;

/// Frames that fit each other.
struct Side {
  DNGMetadata metadata;
  Paths frames;
};

std::optional<DNGMetadata> metadataOf(const std::filesystem::path& frame) {
  try {
    return DNGReader::readMetadata(frame);
  } catch (const std::exception&) {
    return std::nullopt;  // it belongs to no side
  }
}

std::vector<Side> sidesOf(const Paths& frames) {
  std::vector<Side> sides;
  for (const std::filesystem::path& frame : frames) {
    std::optional<DNGMetadata> metadata = metadataOf(frame);
    if (!metadata) continue;
    const auto fits = [&metadata](const Side& side) { return metadata->isGeometryCompatible(side.metadata); };
    auto side = std::find_if(sides.begin(), sides.end(), fits);
    if (side == sides.end()) side = sides.insert(side, {std::move(*metadata), {}});
    side->frames.push_back(frame);
  }
  return sides;
}

std::string namesOf(const Paths& frames) {
  std::string names;
  for (std::size_t i = 0; i < std::min(frames.size(), mostNames); ++i)
    names += (i == 0 ? "" : ", ") + displayName(frames[i]);
  if (frames.size() <= mostNames) return names;
  return LF("%@ and %d more", {names, static_cast<std::int64_t>(frames.size() - mostNames)});
}

}  // namespace

Paths smallerSide(Paths frames) {
  sortByFileName(frames);
  const std::vector<Side> sides = sidesOf(frames);
  const auto fewer = [](const Side& left, const Side& right) { return left.frames.size() < right.frames.size(); };
  const auto largest = std::max_element(sides.begin(), sides.end(), fewer);
  Paths others;
  for (auto side = sides.begin(); side != sides.end(); ++side) {
    if (side != largest) others.insert(others.end(), side->frames.begin(), side->frames.end());
  }
  sortByFileName(others);
  return others;
}

std::string line(const DNGError& error, const Paths& frames) {
  if (error.innermost().kind() != DNGError::Case::profileMismatch) return "";
  const Paths strangers = smallerSide(frames);
  return strangers.empty() ? "" : LF("Of another camera or layout than the rest: %@", {namesOf(strangers)});
}

}  // namespace tessaly::ForeignFrames
