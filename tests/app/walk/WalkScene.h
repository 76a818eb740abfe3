// The folders that a random walk works in: calibration frames of a tiny sensor, its photographs, and the user's home.
#pragma once

#include "support/TemporaryFolder.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tessaly::tests {

class WalkScene {
 public:
  /// Makes the files, and TESSALY_HOME the home.
  WalkScene();

  [[nodiscard]] std::filesystem::path calibration() const { return root_ / "calibration"; }
  [[nodiscard]] std::filesystem::path photographs() const { return root_ / "photographs"; }
  [[nodiscard]] std::filesystem::path empty() const { return root_ / "empty"; }
  [[nodiscard]] std::filesystem::path vanished() const { return empty() / "vanished"; }
  [[nodiscard]] std::filesystem::path copies() const { return root_ / "copies"; }

  /// Keeps a profile, without which there is no batch.
  void keepProfile() const;

  /// Removes the copies, so that the next batch has something to do.
  void removeCopies() const;

  /// What no run may leave or change, one line for each file; only while no batch runs.
  [[nodiscard]] std::vector<std::string> faults() const;

 private:
  void addFrames() const;
  void addPhotographs() const;
  [[nodiscard]] std::string faultOf(const std::filesystem::path& file) const;

  TemporaryFolder root_;
  std::map<std::filesystem::path, std::vector<std::byte>> originals_;
};

}  // namespace tessaly::tests
