// A sensor small enough to write its samples down, its metadata and an empty profile that fits it.
#pragma once

#include "dng/DNGMetadata.h"
#include "profile/CameraProfile.h"
#include "repair/RepairEngine.h"

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace tessaly::tests {

struct SmallSensor {
  DNGMetadata metadata;
  CameraProfile profile;
  std::vector<std::uint16_t> samples;

  /// RGGB, the whole plane active, white 65,535, every sample 1,000.
  SmallSensor(std::int64_t width, std::int64_t height) : samples(static_cast<std::size_t>(width * height), 1000) {
    metadata.model = "Body";
    metadata.rawWidth = metadata.activeWidth = width;
    metadata.rawHeight = metadata.activeHeight = height;
    metadata.whiteLevel = 65535;
    metadata.cfaLayout = CFALayout{2, 2, {0, 1, 1, 2}};
    match();
  }

  /// Makes the profile's identity that of the metadata; its defects stay.
  void match() {
    CameraProfile fresh = CameraProfile::empty("Test", metadata);
    fresh.pixels = std::move(profile.pixels);
    fresh.lines = std::move(profile.lines);
    if (profile.spots) fresh.spots = std::move(profile.spots);
    profile = std::move(fresh);
  }

  void fill(const std::function<std::int64_t(std::int64_t x, std::int64_t y)>& value) {
    for (std::int64_t y = 0; y < metadata.rawHeight; ++y) {
      for (std::int64_t x = 0; x < metadata.rawWidth; ++x)
        at(x, y) = static_cast<std::uint16_t>(value(x, y));
    }
  }

  std::uint16_t& at(std::int64_t x, std::int64_t y) {
    return samples[static_cast<std::size_t>(y * metadata.rawWidth + x)];
  }

  RepairReport repair() { return RepairEngine::repair(samples, metadata, profile); }
};

}  // namespace tessaly::tests
