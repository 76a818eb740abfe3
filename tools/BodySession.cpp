#include "tools/BodySession.h"

namespace tessaly::tools {
namespace {

std::vector<BodySeries> flats(double fNumber) {
  return {{"flat-100", {100, {1, 30}, 0.5, fNumber}},
          {"flat-400", {400, {1, 125}, 0.4, fNumber}},
          {"flat-1600", {1600, {1, 500}, 0.35, fNumber}}};
}

void addDarks(std::vector<BodySeries>& series) {
  series.push_back({"dark-400", {400, {1, 1}}});
  series.push_back({"dark-1600", {1600, {1, 4}}});
}

}  // namespace

std::vector<BodySeries> sessionSeries(SessionKind kind) {
  std::vector<BodySeries> series = flats(kind == SessionKind::wideOpen ? 5.6 : 16);
  if (kind == SessionKind::oneSetting) return {series.front()};
  if (kind == SessionKind::clipped) series.front().exposure.level = 1.3;
  if (kind == SessionKind::twoFrames) series.back().frames = 2;
  for (BodySeries& flat : series)
    flat.exposure.wallPattern = kind == SessionKind::patterned ? 0.01 : 0;
  addDarks(series);
  return series;
}

std::vector<std::filesystem::path> writeSession(const SensorBody& body, const std::vector<BodySeries>& series,
                                                const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const BodySeries& setting : series) {
    for (int frame = 1; frame <= setting.frames; ++frame) {
      files.push_back(folder / (setting.name + "-" + std::to_string(frame) + ".dng"));
      body.file(setting.exposure, body.render(setting.exposure, files.size())).write(files.back());
    }
  }
  return files;
}

}  // namespace tessaly::tools
