#include "comparison/Rows.h"

#include <fmt/format.h>

#include <cstdlib>
#include <iterator>

namespace tessaly::bench {
namespace {

constexpr std::int64_t usualPixels = 2000;

std::string megapixels(const ImageForm& form) {
  return fmt::format("{} megapixels", (form.width * form.height + 500'000) / 1'000'000);
}

/// Files for one repair and the names of its rows.
struct RepairScene {
  RepairScene(const Path& parent, int bits)
      : material(parent),
        source(material.photograph("source.dng", {6000, 4000, bits})),
        copy(material / "copy.dng"),
        profile(material.profile("profile.json", source, usualPixels)),
        name(fmt::format("repair, {} bits", bits)) {}

  [[nodiscard]] Command repairing() const { return repair(source, copy, profile); }

  Material material;
  Path source;
  Path copy;
  Path profile;
  std::string name;
};

/// The photograph, dumped with the same pixels mended: no DNG comes out and nothing is verified.
void compareOtherDeveloper(const RepairScene& scene, const Extent& extent, const Report& report) {
  if (!isInstalled("dcraw")) return;
  writeBadPixels(scene.material / "bad.txt", scene.profile);
  const Command dump{"dcraw", "-P", (scene.material / "bad.txt").string(), "-D", "-4", "-c", scene.source.string()};
  report({"`dcraw -P -D`, the same pixels" + scene.name.substr(6), "`cp` + `cmp`", "", extent.rounds(5),
          programs({dump}), programs(copyAndCompare(scene.source, scene.copy), {scene.copy})});
}

/// A durable copy by hand: written to the medium, dropped from memory, compared.
std::vector<Command> durableCopy(const RepairScene& scene) {
  const std::string source = scene.source.string();
  const std::string copy = scene.copy.string();
  return {{"dd", "if=" + source, "of=" + copy, "bs=4M", "conv=fsync", "status=none"},
          {"dd", "of=" + copy, "oflag=nocache", "conv=notrunc,fdatasync", "count=0", "status=none"},
          {"cmp", source, copy}};
}

Command calibrate(const Path& folder) {
  return {TESSALY_CLI, "calibrate", folder.string()};
}

Command readAll(const std::vector<Path>& files) {
  Command command{"cat"};
  for (const Path& file : files)
    command.push_back(file.string());
  return command;
}

void compareCalibrationOf(const ImageForm& form, std::size_t count, int rounds, const Report& report) {
  const Material material(folderInMemory());
  const std::vector<Path> frames = material.frames("frames", form, count);
  const std::vector<Command> work{calibrate(material / "frames")};
  const std::vector<Command> floor{readAll(frames)};
  const std::string name = fmt::format("calibrate {} × {}", count, megapixels(form));
  const bool isUsual = count == 30;
  report({name + ", one processor", "`cat` of the frames, one processor", isUsual ? "14" : "", rounds,
          programsOnOneProcessor(work), programsOnOneProcessor(floor)});
  report(
      {name + ", all processors", "`cat` of the frames", isUsual ? "9" : "", rounds, programs(work), programs(floor)});
}

}  // namespace

Path folderInMemory() {
  return std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path();
}

Path folderOnDisk() {
  const char* named = std::getenv("TESSALY_BENCH_FOLDER");
  return named ? Path(named) : std::filesystem::temp_directory_path();
}

Command repair(const Path& source, const Path& copy, const Path& profile) {
  return {TESSALY_CLI, "repair-file", source.string(), copy.string(), "--profile", profile.string()};
}

std::vector<Command> copyAndCompare(const Path& source, const Path& copy) {
  return {{"cp", source.string(), copy.string()}, {"cmp", source.string(), copy.string()}};
}

void compareRepairInMemory(const Extent& extent, const Report& report) {
  struct Goal {
    int bits;
    const char* free;
    const char* bound;
  };
  for (const Goal& goal : {Goal{16, "0.85", "1.20"}, Goal{12, "1.00", "1.35"}, Goal{14, "1.00", "1.35"}}) {
    const RepairScene scene(folderInMemory(), goal.bits);
    const std::vector<Command> floor = copyAndCompare(scene.source, scene.copy);
    report({scene.name + ", in memory", "`cp` + `cmp`", goal.free, extent.rounds(15),
            programs({scene.repairing()}, {scene.copy}), programs(floor, {scene.copy})});
    report({scene.name + ", in memory, one processor", "`cp` + `cmp`, one processor", goal.bound, extent.rounds(15),
            programsOnOneProcessor({scene.repairing()}, {scene.copy}), programsOnOneProcessor(floor, {scene.copy})});
    compareOtherDeveloper(scene, extent, report);
  }
}

void compareRepairOnDisk(const Extent& extent, const Report& report) {
  for (const int bits : {16, 12, 14}) {
    const RepairScene scene(folderOnDisk(), bits);
    report({scene.name + ", on disk", "`dd conv=fsync` + `cmp`", bits == 16 ? "0.95" : "1.00", extent.rounds(15),
            programs({scene.repairing()}, {scene.copy}), programs(durableCopy(scene), {scene.copy})});
  }
}

void compareStart(const Extent& extent, const Report& report) {
  const Material material(folderInMemory());
  const Path large = material.photograph("large.dng", imageOf(50, 16));
  const Work nothing = programs({Command{"true"}});
  report({"`--version`", "`true`", "+ 2 ms", extent.rounds(100), programs({{TESSALY_CLI, "--version"}}), nothing});
  report({"`inspect` of 100 MB", "`true`", "+ 2 ms", extent.rounds(100),
          programs({{TESSALY_CLI, "inspect", large.string()}}), nothing});
}

void compareProfiles(const Extent& extent, const Report& report) {
  const Material material(folderInMemory());
  const Path photograph = material.photograph("source.dng", {6000, 4000, 16});
  const auto validate = [&](const std::string& name, std::int64_t pixels) {
    const Path profile = material.profile(name, photograph, pixels);
    return programs({{TESSALY_CLI, "profiles", "validate", profile.string(), photograph.string()}});
  };
  const Work empty = validate("empty.json", 0);
  report({"read a profile of 2,000 pixels", "an empty profile", "+ 1 ms", extent.rounds(50),
          validate("small.json", usualPixels), empty});
  report({"read a profile of 100,000 pixels", "an empty profile", "+ 30 ms", extent.rounds(15),
          validate("large.json", 100'000), empty});
}

void compareBatch(const Extent& extent, const Report& report) {
  constexpr int count = 10;
  const Material material(folderInMemory());
  std::filesystem::create_directory(material / "in");
  const Path first = material.photograph("in/P0.dng", {6000, 4000, 16});
  const Path profile = material.profile("profile.json", first, usualPixels);
  const Path output = material / "out";
  std::vector<Command> floor = copyAndCompare(first, material / "copy0.dng");
  std::vector<Path> copies{material / "copy0.dng"};
  for (int number = 1; number < count; ++number) {
    const Path source = material / fmt::format("in/P{}.dng", number);
    std::filesystem::copy_file(first, source);
    copies.push_back(material / fmt::format("copy{}.dng", number));
    for (Command& command : copyAndCompare(source, copies.back()))
      floor.push_back(std::move(command));
  }
  for (const int workers : {1, 2, 4}) {
    const Command batch{
        TESSALY_CLI,     "repair",    (material / "in").string(), "--profile", profile.string(), "--output",
        output.string(), "--workers", std::to_string(workers),    "--no-log"};
    report({fmt::format("batch of {}, {} worker{}", count, workers, workers == 1 ? "" : "s"), "`cp` + `cmp` of each",
            workers == 2 ? "0.70" : "", extent.rounds(5), programs({batch}, {output}), programs(floor, copies)});
  }
}

void compareCalibration(const Extent& extent, const Report& report) {
  compareCalibrationOf({6000, 4000, 12}, 30, extent.rounds(3), report);
  if (extent.isQuick) return;
  compareCalibrationOf({6000, 4000, 12}, 100, 1, report);
  compareCalibrationOf(imageOf(100, 12), 6, 1, report);
}

}  // namespace tessaly::bench
