// Photographs of one body whose photosite at column 10, row 12 is stuck, and the profile "p.json" that knows it.
#pragma once

#include "cli/ProgramTest.h"
#include "dng/DNGReader.h"
#include "profile/CameraProfileJSON.h"
#include "tools/DNGBuilder.h"

#include <nlohmann/json.hpp>

namespace tessaly::tests {

class RepairScene : public ProgramTest {
 protected:
  static tools::DNGBuilder stuckPhotograph() {
    std::vector<std::uint16_t> values(std::size_t{64} * 48, 1000);
    values[std::size_t{12} * 64 + 10] = 60000;
    return tools::DNGBuilder().size(64, 48).uniqueModel("Body").serial("SN-1").samples(values);
  }

  void SetUp() override {
    photographs({"photos/L1.DNG"});
    CameraProfile profile = CameraProfile::empty("Body", DNGReader::readMetadata(folder / "photos/L1.DNG"));
    profile.pixels = {{10, 12, 1.0, "stuck"}};
    writeText(folder / "p.json", encodeProfile(profile));
  }

  /// Writes one under each of these names below the folder in which the program runs.
  void photographs(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
      std::filesystem::create_directories((folder / name).parent_path());
      stuckPhotograph().write(folder / name);
    }
  }

  [[nodiscard]] bool isRepaired(const std::string& name) const {
    const std::filesystem::path file = folder / name;
    return std::filesystem::exists(file) && DNGReader::readPlane(file).samples[std::size_t{12} * 64 + 10] == 1000;
  }

  /// The names of the files below a folder, with the folders on the way to them.
  [[nodiscard]] std::vector<std::string> filesBelow(const std::string& name) const {
    std::vector<std::string> files;
    const std::filesystem::path root = folder / name;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
      if (entry.is_regular_file()) files.push_back(entry.path().lexically_relative(root));
    return files;
  }

  ProgramResult repair(Arguments arguments) {
    arguments.insert(arguments.begin(), "repair");
    arguments.insert(arguments.end(), {"--profile", "p.json"});
    return run(arguments);
  }
};

}  // namespace tessaly::tests
