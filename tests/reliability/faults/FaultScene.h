// The ground that the command line is disturbed on: photographs, calibration frames, profiles, and the commands that
// work on them.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tessaly::faults {

/// Every regular file below a folder: its bytes by its path there.
using Tree = std::map<std::string, std::string>;

[[nodiscard]] Tree treeOf(const std::filesystem::path& folder);

/// Makes the folder hold exactly these files.
void restore(const std::filesystem::path& folder, const Tree& tree);

/// The files that every command starts from.
[[nodiscard]] Tree sceneTree();

struct Command {
  std::string name;
  std::vector<std::string> arguments;
};

/// Every command of the command line, some in several ways. They run in the folder of the files; "home" there stands
/// for the user's.
[[nodiscard]] std::vector<Command> commands();

}  // namespace tessaly::faults
