#include "reliability/faults/FaultScene.h"

#include "dng/DNGReader.h"
#include "profile/CameraProfileJSON.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"
#include "tools/Scenes.h"
#include "tools/SensorSimulator.h"

#include <numeric>

namespace tessaly::faults {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t width = 48;
constexpr std::int64_t height = 32;

tools::DNGBuilder photograph(int bits) {
  std::vector<std::uint16_t> samples(static_cast<std::size_t>(width * height));
  std::uint32_t state = 7;
  for (std::uint16_t& sample : samples) {
    state = state * 1'664'525U + 1'013'904'223U;
    sample = static_cast<std::uint16_t>(state >> 20U);
    if (bits == 8) sample = static_cast<std::uint16_t>(sample & 0xFFU);
  }
  return tools::DNGBuilder().size(width, height).bits(bits).uniqueModel("Body").serial("7").samples(samples);
}

CameraProfile profileFor(const fs::path& file, const std::string& name) {
  CameraProfile profile = CameraProfile::empty(name, DNGReader::readMetadata(file));
  profile.pixels = {{10, 12, 1.0, "stuck"}, {30, 20, 1.0, "stuck"}};
  profile.lines = {{20, 0, height - 1, 1, 1.0, "column"}};
  return profile;
}

void makePhotographs(const fs::path& folder) {
  fs::create_directories(folder / "photos");
  photograph(16).write(folder / "one.dng");
  photograph(16).write(folder / "photos/L1.dng");
  photograph(12).tiles(16, 16).write(folder / "photos/L2.dng");
  std::vector<std::uint16_t> table(256);
  std::iota(table.begin(), table.end(), std::uint16_t{3});
  photograph(8).linearization(table).inSubIFD().bigEndian().write(folder / "photos/L3.dng");
  fs::create_directory(folder / "done");
  photograph(16).write(folder / "done/L2.dng");  // of somebody else
  tests::writeText(folder / "plane.bin", "an older result");
}

// As small as a calibration takes: every run writes them anew.
void makeFrames(const fs::path& folder) {
  tools::SensorDescription sensor;
  sensor.width = sensor.activeWidth = 257;
  sensor.height = sensor.activeHeight = 65;
  sensor.activeX = sensor.activeY = 0;
  tools::PlantedDefects defects;
  for (const std::int64_t x : {60, 120, 200})
    defects.pixels.push_back({x, 30, tools::PlantedPixel::Kind::stuck, 0.9});
  const tools::SensorSimulator body(sensor, defects);
  fs::create_directory(folder);
  for (std::uint64_t number = 0; number < 6; ++number) {
    const bool isBright = number < 3;
    const tools::Scene scene =
        isBright ? tools::flatField(sensor.activeWidth, sensor.activeHeight, 0.5) : tools::darkness();
    const tools::Exposure exposure{100, {1, isBright ? 60 : 4}};
    auto samples = body.render(scene, exposure, number, tools::Condition::damaged);
    body.file(exposure, std::move(samples)).write(folder / ("F" + std::to_string(number) + ".dng"));
  }
}

void makeProfiles(const fs::path& folder) {
  const fs::path store = folder / "home/Tessaly/Profiles";
  const fs::path earlier = folder / "home/Orvendel/Profiles";
  fs::create_directories(store);
  fs::create_directories(earlier);
  tests::writeText(folder / "p.json", encodeProfile(profileFor(folder / "one.dng", "File")));
  for (const auto& [name, place] : {std::pair("Body", store), std::pair("Earlier", earlier)}) {
    const CameraProfile profile = profileFor(folder / "one.dng", name);
    tests::writeText(place / (profile.id.text() + ".json"), encodeProfile(profile));
  }
}

}  // namespace

Tree treeOf(const fs::path& folder) {
  Tree tree;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) tree[entry.path().lexically_relative(folder)] = tests::readText(entry.path());
  }
  return tree;
}

void restore(const fs::path& folder, const Tree& tree) {
  fs::remove_all(folder);
  for (const auto& [path, bytes] : tree) {
    fs::create_directories((folder / path).parent_path());
    tests::writeText(folder / path, bytes);
  }
}

Tree sceneTree() {
  const tests::TemporaryFolder folder;
  makePhotographs(folder.path());
  makeFrames(folder / "frames");
  makeProfiles(folder.path());
  return treeOf(folder.path());
}

std::vector<Command> commands() {
  return {
      {"inspect", {"inspect", "photos/L3.dng"}},
      {"samples", {"samples", "photos/L2.dng", "--output", "plane.bin"}},
      {"samples to a pipe", {"samples", "photos/L3.dng", "--output", "-"}},
      {"calibrate",
       {"calibrate", "frames", "--result", "result.json", "--preview", "preview.pgm", "--name", "New", "--profile",
        "new.json", "--save", "--include", "all"}},
      {"calibrate --inspect", {"calibrate", "frames", "--inspect", "frames/F1.dng", "--preview", "preview.pgm"}},
      {"repair", {"repair", "photos", "--profile", "p.json", "--workers", "2", "--summary", "summary.json"}},
      {"repair numbered",
       {"repair", "photos", "--profile", "p.json", "--output", "done", "--existing", "numberedCopy", "--workers", "4",
        "--summary", "summary.json"}},
      {"repair skipping",
       {"repair", "photos", "--profile", "Body", "--output", "done", "--existing", "skip", "--summary",
        "summary.json"}},
      {"repair one", {"repair", "one.dng", "--profile", "p.json", "--summary", "summary.json"}},
      {"repair-file", {"repair-file", "one.dng", "copies/new.dng", "--profile", "p.json"}},
      {"profiles list", {"profiles", "list"}},
      {"profiles show", {"profiles", "show", "Body"}},
      {"profiles validate", {"profiles", "validate", "Body", "one.dng"}},
      {"profiles import", {"profiles", "import", "p.json"}},
      {"profiles export", {"profiles", "export", "Body", "exported.json"}},
      {"profiles delete", {"profiles", "delete", "Body"}},
      {"help", {"help", "repair"}},
  };
}

}  // namespace tessaly::faults
