#include "tools/SampleSet.h"

#include "profile/CameraProfileJSON.h"
#include "tools/SampleBody.h"
#include "tools/TruthProfile.h"

#include <cstddef>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly::tools {
namespace {

// A set with other file names would stay between the new files; so the number grows when a name changes.
constexpr std::string_view markerLine = "Tessaly sample set 1";

constexpr std::string_view explanation = R"(

calibration/  frames of an evenly lit wall and frames with the lens cap on, at three exposures each
photographs/  photographs by the same simulated camera, with the same defects
undamaged/    the same photographs as a sensor without defects would have taken them
truth.json    the defects that were planted, as a camera profile
)";

bool isSampleSet(const SampleSetFolders& set) {
  std::ifstream file(set.marker, std::ios::binary);
  std::string line;
  return std::getline(file, line) && line == markerLine;
}

void writeText(const std::filesystem::path& path, std::string_view text) {
  const auto* bytes = reinterpret_cast<const std::byte*>(text.data());
  writeBytes(path, {bytes, bytes + text.size()});
}

/// The marker comes first, so that a set whose writing was interrupted can be written again.
void prepare(const std::filesystem::path& folder, const SampleSetFolders& set) {
  std::filesystem::create_directories(folder);
  if (!std::filesystem::is_empty(folder) && !isSampleSet(set)) {
    throw SampleSetError("The folder " + folder.string() + " is not empty and no sample set of this version.");
  }
  writeText(set.marker, std::string(markerLine).append(explanation));
  for (const auto& subfolder : {set.calibration, set.photographs, set.undamaged}) {
    std::filesystem::create_directories(subfolder);
  }
}

void writeFrame(const std::filesystem::path& folder, const SensorBody& body, const SampleFrame& frame) {
  sampleFile(body, frame).write(folder / (frame.name + ".dng"));
}

}  // namespace

void writeSampleSet(const std::filesystem::path& folder, std::uint64_t seed) {
  const SampleSetFolders set(folder);
  prepare(folder, set);
  const BodyDescription description = sampleBody(seed);
  const SensorBody body(description, sampleDefects(description));
  const SensorBody sound(description, {});
  writeText(set.truth, encodeProfile(truthProfile(body, photographFNumber)));
  for (const SampleFrame& frame : sampleCalibration())
    writeFrame(set.calibration, body, frame);
  for (const SampleFrame& frame : samplePhotographs(description)) {
    writeFrame(set.photographs, body, frame);
    writeFrame(set.undamaged, sound, frame);
  }
}

}  // namespace tessaly::tools
