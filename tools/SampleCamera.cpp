#include "tools/SampleCamera.h"

#include <array>
#include <utility>

namespace tessaly::tools {
namespace {

constexpr std::uint64_t firstPhotographNumber = 1000;

struct Series {
  std::string name;
  Scene scene;
  Exposure exposure;
};

// A partial column needs four fifths of a setting's frames to agree. With nine bright frames pure chance hardly ever
// reaches that; with three to eight it does below one hot pixel in fifty. Dark frames have next to no noise.
constexpr int brightFramesPerSetting = 9;
constexpr int darkFramesPerSetting = 3;

/// The scenes' colours are those of linear sRGB, so the camera's are these, each through its filter.
constexpr std::array<double, 9> sRGBFromXYZ{3.2406, -1.5372, -0.4986, -0.9689, 1.8758, 0.0415, 0.0557, -0.2040, 1.0570};
constexpr int daylightD65 = 21;  // the white of sRGB

std::array<double, 9> cameraFromXYZ(const SensorDescription& sensor) {
  std::array<double, 9> matrix = sRGBFromXYZ;
  for (std::size_t i = 0; i < matrix.size(); ++i)
    matrix[i] *= sensor.sensitivity[i / 3];
  return matrix;
}

void append(std::vector<PlannedFrame>& frames, const Series& series, int count) {
  for (int i = 1; i <= count; ++i) {
    frames.push_back({series.name + "-" + std::to_string(i), series.scene, series.exposure, frames.size()});
  }
}

}  // namespace

std::vector<PlannedFrame> calibrationFrames(const SensorDescription& sensor) {
  const auto wall = [&sensor](double level) { return flatField(sensor.activeWidth, sensor.activeHeight, level); };
  const std::array<Series, 3> bright{{{"bright-30th", wall(0.60), {100, {1, 30}}},
                                      {"bright-60th", wall(0.40), {100, {1, 60}}},
                                      {"bright-125th", wall(0.25), {100, {1, 125}}}}};
  const std::array<Series, 3> dark{{{"dark-quarter-second", darkness(), {400, {1, 4}}},
                                    {"dark-one-second", darkness(), {400, {1, 1}}},
                                    {"dark-two-seconds", darkness(), {800, {2, 1}}}}};
  std::vector<PlannedFrame> frames;
  for (const Series& series : bright)
    append(frames, series, brightFramesPerSetting);
  for (const Series& series : dark)
    append(frames, series, darkFramesPerSetting);
  return frames;
}

std::vector<PlannedFrame> photographFrames(const SensorDescription& sensor) {
  constexpr std::array<Exposure, 3> exposures{{{100, {1, 2}}, {400, {1, 4}}, {800, {1, 8}}}};
  std::vector<PlannedFrame> frames;
  for (NamedScene& photograph : photographs(sensor.activeWidth, sensor.activeHeight)) {
    const std::size_t i = frames.size();
    frames.push_back({std::move(photograph.name), std::move(photograph.scene), exposures.at(i % exposures.size()),
                      firstPhotographNumber + i});
  }
  return frames;
}

DNGBuilder frameFile(const SensorSimulator& sensor, const PlannedFrame& frame, Condition condition) {
  const SensorDescription& body = sensor.description();
  DNGBuilder file = sensor.file(frame.exposure, sensor.render(frame.scene, frame.exposure, frame.number, condition));
  if (body.cfa.empty()) return file;
  return std::move(file.neutral(body.sensitivity).colourMatrix(cameraFromXYZ(body), daylightD65));
}

}  // namespace tessaly::tools
