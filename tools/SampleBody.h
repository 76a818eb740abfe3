// The body that the sample set is made with, what is wrong with it, and its frames. Of the middle of what is met: some
// of it obvious, some of it hardly to be seen.
#pragma once

#include "tools/SensorBody.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tessaly::tools {

inline constexpr double photographFNumber = 11;

/// A frame of the sample set: its file's name without extension, how it is taken, and its number.
struct SampleFrame {
  std::string name;
  BodyExposure exposure;
  std::uint64_t number = 0;
};

[[nodiscard]] BodyDescription sampleBody(std::uint64_t seed);

/// Moderate strengths, logarithmic within each kind.
[[nodiscard]] BodyDefects sampleDefects(const BodyDescription& body);

/// 27 flats at three exposures and 9 frames with the lens cap on at three others.
[[nodiscard]] std::vector<SampleFrame> sampleCalibration();

/// Six photographs at f/11, smooth and textured ones, exposed long enough for hot pixels to show.
[[nodiscard]] std::vector<SampleFrame> samplePhotographs(const BodyDescription& body);

/// The file of a frame, with the colours that raw developers need to render it.
[[nodiscard]] DNGBuilder sampleFile(const SensorBody& body, const SampleFrame& frame);

}  // namespace tessaly::tools
