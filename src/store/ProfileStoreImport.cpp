// What a profile from somewhere else must hold before it is taken into the store.
#include "dng/RawLimits.h"
#include "platform/Text.h"
#include "store/ProfileStore.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

namespace tessaly::ProfileStore {
namespace {

constexpr std::int64_t oldestVersion = 3;

void require(bool holds, const char* reason) {
  if (!holds) throw InvalidProfile(reason);
}

// The raw size is within its limits by now, so that no difference below can overflow.

bool isActiveArea(const CameraProfile& profile) {
  return profile.activeX >= 0 && profile.activeY >= 0 && profile.activeWidth >= 1 && profile.activeHeight >= 1 &&
         profile.activeWidth <= profile.rawWidth && profile.activeHeight <= profile.rawHeight &&
         profile.activeX <= profile.rawWidth - profile.activeWidth &&
         profile.activeY <= profile.rawHeight - profile.activeHeight;
}

bool isInside(const DefectPixel& pixel, const CameraProfile& profile) {
  return pixel.x >= 0 && pixel.x < profile.rawWidth && pixel.y >= 0 && pixel.y < profile.rawHeight &&
         std::isfinite(pixel.confidence);
}

bool isInside(const DefectLine& line, const CameraProfile& profile) {
  return line.x >= 0 && line.width >= 1 && line.width <= profile.rawWidth && line.x <= profile.rawWidth - line.width &&
         line.yStart >= 0 && line.yStart <= line.yEnd && line.yEnd < profile.rawHeight &&
         std::isfinite(line.confidence);
}

bool isInside(const DefectSpot& spot, const CameraProfile& profile) {
  return spot.radiusX >= 1 && spot.radiusY >= 1 && spot.radiusX <= spot.x && spot.radiusY <= spot.y &&
         spot.radiusX < profile.rawWidth && spot.radiusY < profile.rawHeight &&
         spot.x < profile.rawWidth - spot.radiusX && spot.y < profile.rawHeight - spot.radiusY &&
         std::isfinite(spot.confidence);
}

template <typename Defects>
bool areInside(const Defects& defects, const CameraProfile& profile) {
  return std::ranges::all_of(defects, [&profile](const auto& defect) { return isInside(defect, profile); });
}

}  // namespace

void validateImported(const CameraProfile& profile) {
  require(profile.version >= oldestVersion && profile.version <= CameraProfile::currentVersion, "Profile version");
  require(!trimmed(profile.name).empty(), "Profile name");
  require(!profile.cameraModel.empty(), "Profile camera model");
  require(isRawSize(profile.rawWidth, profile.rawHeight), "Profile raw dimensions");
  require(isActiveArea(profile), "Profile active area");
  require(areInside(profile.pixels, profile), "Profile pixels");
  require(areInside(profile.lines, profile), "Profile columns");
  require(!profile.spots || areInside(*profile.spots, profile), "Profile spots");
}

}  // namespace tessaly::ProfileStore
