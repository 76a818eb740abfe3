#include "tools/SampleBody.h"

#include "tools/Scenes.h"

#include <array>
#include <utility>

namespace tessaly::tools {
namespace {

constexpr std::uint64_t firstPhotographNumber = 1000;
constexpr int flatsPerSetting = 9;
constexpr int darksPerSetting = 3;
constexpr double flatFNumber = 16;

struct Setting {
  const char* name;
  BodyExposure exposure;
  int frames;
};

/// The scenes' colours are those of linear sRGB, so the camera's are these, each through its filter.
constexpr std::array<double, 9> linearFromXYZ{3.2406, -1.5372, -0.4986, -0.9689, 1.8758,
                                              0.0415, 0.0557,  -0.2040, 1.0570};
constexpr int whiteOfScenes = 21;  // D65

std::array<double, 9> bodyFromXYZ() {
  std::array<double, 9> matrix = linearFromXYZ;
  for (std::size_t i = 0; i < matrix.size(); ++i)
    matrix[i] *= SensorBody::sensitivity[i / 3];
  return matrix;
}

}  // namespace

BodyDescription sampleBody(std::uint64_t seed) {
  BodyDescription body;
  body.model = "Tessaly Simulated Camera";
  body.activeWidth = 1120;
  body.activeHeight = 744;
  body.seed = seed;
  return body;
}

BodyDefects sampleDefects(const BodyDescription& body) {
  const BodyDefectCounts counts = BodyDefectCounts::of(body.activeWidth, body.activeHeight);
  return plantBodyDefects(body.activeWidth, body.activeHeight, counts, body.seed, BodyStrengths::moderate());
}

std::vector<SampleFrame> sampleCalibration() {
  const std::array<Setting, 6> settings{{{"bright-30th", {100, {1, 30}, 0.60, flatFNumber}, flatsPerSetting},
                                         {"bright-60th", {100, {1, 60}, 0.40, flatFNumber}, flatsPerSetting},
                                         {"bright-125th", {100, {1, 125}, 0.25, flatFNumber}, flatsPerSetting},
                                         {"dark-quarter-second", {400, {1, 4}}, darksPerSetting},
                                         {"dark-one-second", {400, {1, 1}}, darksPerSetting},
                                         {"dark-two-seconds", {800, {2, 1}}, darksPerSetting}}};
  std::vector<SampleFrame> frames;
  for (const Setting& setting : settings) {
    for (int i = 1; i <= setting.frames; ++i)
      frames.push_back({setting.name + ("-" + std::to_string(i)), setting.exposure, frames.size()});
  }
  return frames;
}

std::vector<SampleFrame> samplePhotographs(const BodyDescription& body) {
  const std::array<BodyExposure, 3> exposures{{{100, {1, 2}}, {400, {1, 4}}, {800, {1, 8}}}};
  std::vector<SampleFrame> frames;
  for (NamedScene& photograph : photographs(body.activeWidth, body.activeHeight)) {
    const std::size_t i = frames.size();
    SampleFrame frame{std::move(photograph.name), exposures.at(i % exposures.size()), firstPhotographNumber + i};
    frame.exposure.level = 1;
    frame.exposure.fNumber = photographFNumber;
    frame.exposure.scene = std::move(photograph.scene);
    frames.push_back(std::move(frame));
  }
  return frames;
}

DNGBuilder sampleFile(const SensorBody& body, const SampleFrame& frame) {
  DNGBuilder file = body.file(frame.exposure, body.render(frame.exposure, frame.number));
  return std::move(file.neutral(SensorBody::sensitivity).colourMatrix(bodyFromXYZ(), whiteOfScenes));
}

}  // namespace tessaly::tools
