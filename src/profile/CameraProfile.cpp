#include "profile/CameraProfile.h"

#include "dng/DNGError.h"

#include <fmt/format.h>

#include <utility>

namespace tessaly {

namespace {

void require(bool fits, const char* message) {
  if (!fits) throw DNGError::profileMismatch(message);
}

/// Whether `first` … `first + count - 1` (count ≥ 1) are positions below `limit`, for any values whatsoever.
bool rangeFits(std::int64_t first, std::int64_t count, std::int64_t limit) {
  std::int64_t end = 0;
  return first >= 0 && count >= 1 && !__builtin_add_overflow(first, count, &end) && end <= limit;
}

/// Whether `centre - radius` … `centre + radius` (radius ≥ 1) are positions below `limit`, for any values whatsoever.
bool spanFits(std::int64_t centre, std::int64_t radius, std::int64_t limit) {
  std::int64_t first = 0;
  std::int64_t last = 0;
  return radius >= 1 && !__builtin_sub_overflow(centre, radius, &first) && first >= 0 &&
         !__builtin_add_overflow(centre, radius, &last) && last < limit;
}

std::optional<RawRectangle> activeAreaOf(const DNGMetadata& metadata) {
  if (!metadata.sourceEncoding) return std::nullopt;
  return metadata.sourceEncoding->activeArea;
}

void validateIdentity(const CameraProfile& profile, const DNGMetadata& metadata) {
  if (profile.version >= 4) {
    require(profile.sensorActiveArea == activeAreaOf(metadata), "Sensor ActiveArea differs or is missing");
    require(profile.cameraSerial == metadata.cameraSerial, "Camera serial differs or is missing");
    require(profile.cfaLayout == metadata.cfaLayout, "CFA layout differs");
  } else if (profile.version == 3 && profile.cameraSerial && metadata.cameraSerial) {
    require(*profile.cameraSerial == *metadata.cameraSerial, "Camera serial differs");
  }
}

void validateModel(const CameraProfile& profile, const DNGMetadata& metadata) {
  if (profile.cameraModel == metadata.model) return;
  throw DNGError::profileMismatch(
      fmt::format("Profile camera: {}; file camera: {}", profile.cameraModel, metadata.model));
}

void validateSizes(const CameraProfile& profile, const DNGMetadata& metadata) {
  require(profile.rawWidth == metadata.rawWidth && profile.rawHeight == metadata.rawHeight &&
              profile.activeX == metadata.activeX && profile.activeY == metadata.activeY &&
              profile.activeWidth == metadata.activeWidth && profile.activeHeight == metadata.activeHeight,
          "Sensor dimensions or active area differ");
}

void validatePixel(const DefectPixel& pixel, const CameraProfile& profile) {
  if (rangeFits(pixel.x, 1, profile.rawWidth) && rangeFits(pixel.y, 1, profile.rawHeight)) return;
  throw DNGError::profileMismatch(
      fmt::format("Defective-pixel coordinates are out of bounds: ({}, {})", pixel.x, pixel.y));
}

void validateLine(const DefectLine& line, const CameraProfile& profile) {
  if (rangeFits(line.x, line.width, profile.rawWidth) && line.yStart >= 0 && line.yEnd >= line.yStart &&
      line.yEnd < profile.rawHeight) {
    return;
  }
  throw DNGError::profileMismatch(fmt::format("Defective-column range is out of bounds: x={}", line.x));
}

void validateSpot(const DefectSpot& spot, const CameraProfile& profile) {
  if (spanFits(spot.x, spot.radiusX, profile.rawWidth) && spanFits(spot.y, spot.radiusY, profile.rawHeight)) return;
  throw DNGError::profileMismatch(fmt::format("Fixed-spot range is out of bounds: ({}, {})", spot.x, spot.y));
}

}  // namespace

CameraProfile CameraProfile::empty(std::string name, const DNGMetadata& metadata) {
  CameraProfile profile;
  profile.id = UUID::random();
  profile.name = std::move(name);
  profile.sensorActiveArea = activeAreaOf(metadata);
  profile.cameraSerial = metadata.cameraSerial;
  profile.cfaLayout = metadata.cfaLayout;
  profile.cameraModel = metadata.model;
  profile.rawWidth = metadata.rawWidth;
  profile.rawHeight = metadata.rawHeight;
  profile.activeX = metadata.activeX;
  profile.activeY = metadata.activeY;
  profile.activeWidth = metadata.activeWidth;
  profile.activeHeight = metadata.activeHeight;
  profile.createdAt = currentTimestamp();
  profile.spots.emplace();
  return profile;
}

void CameraProfile::validate(const DNGMetadata& metadata) const {
  validateIdentity(*this, metadata);
  validateModel(*this, metadata);
  validateSizes(*this, metadata);
  for (const DefectPixel& pixel : pixels)
    validatePixel(pixel, *this);
  for (const DefectLine& line : lines)
    validateLine(line, *this);
  if (!spots) return;
  for (const DefectSpot& spot : *spots)
    validateSpot(spot, *this);
}

}  // namespace tessaly
