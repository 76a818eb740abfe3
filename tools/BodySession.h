// An evening of calibration frames of a simulated body: which settings, and the files of a folder.
#pragma once

#include "tools/SensorBody.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tessaly::tools {

/// Frames of one setting.
struct BodySeries {
  std::string name;
  BodyExposure exposure;
  int frames = 6;
};

/// What is told apart by how the frames were taken.
enum class SessionKind {
  usual,       ///< flats at ISO 100, 400, 1600 and f/16, darks of 1 s at ISO 400 and 1/4 s at ISO 1600
  wideOpen,    ///< flats at f/5.6
  clipped,     ///< the flats at ISO 100 too bright
  oneSetting,  ///< flats of one setting, no darks
  patterned,   ///< a wall with a faint pattern that moves between frames
  twoFrames    ///< two frames of one setting among the usual ones
};

[[nodiscard]] std::vector<BodySeries> sessionSeries(SessionKind kind);

/// Writes "<name>-<number>.dng" for each frame into the folder, which must exist; returns the files.
std::vector<std::filesystem::path> writeSession(const SensorBody& body, const std::vector<BodySeries>& series,
                                                const std::filesystem::path& folder);

}  // namespace tessaly::tools
