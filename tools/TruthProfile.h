// What was planted, as the camera profile that a perfect calibration would have saved.
#pragma once

#include "profile/CameraProfile.h"
#include "tools/SensorBody.h"

#include <optional>
#include <string>

namespace tessaly::tools {

/// Reasons say what it is and how strong: "Hot pixel, 420 e/s", "Partial column, 12 u", "Dust, 3.1 %". Shadows of dust
/// are those at `fNumber`. The id follows from the seed.
[[nodiscard]] CameraProfile truthProfile(const SensorBody& body, double fNumber);

/// What a reader would tell of the body's files, as far as profiles and repairs ask.
[[nodiscard]] DNGMetadata metadataOf(const BodyDescription& body);

/// Such a reason taken apart.
struct PlantedReason {
  std::string kind;
  std::optional<double> strength;
  std::string unit;

  explicit PlantedReason(const std::string& reason);
};

}  // namespace tessaly::tools
