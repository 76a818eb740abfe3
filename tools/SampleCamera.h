// The frames that the sample set consists of: which scene, how exposed, under which name, and their files. Tests and
// benchmarks of the calibration use the same frames without writing them.
#pragma once

#include "tools/SensorSimulator.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tessaly::tools {

struct PlannedFrame {
  std::string name;  ///< of the file, without extension
  Scene scene;
  Exposure exposure;
  std::uint64_t number = 0;  ///< no two frames of a body have the same
};

/// 27 frames of an evenly lit wall at three exposures and 9 with the lens cap on at three others.
[[nodiscard]] std::vector<PlannedFrame> calibrationFrames(const SensorDescription& sensor);

/// Six photographs, smooth and textured ones, exposed long enough for hot pixels to show.
[[nodiscard]] std::vector<PlannedFrame> photographFrames(const SensorDescription& sensor);

/// The file of a frame, with the colours that raw developers need to render it.
[[nodiscard]] DNGBuilder frameFile(const SensorSimulator& sensor, const PlannedFrame& frame, Condition condition);

}  // namespace tessaly::tools
