// A folder with everything that is needed to try the program without a camera:
//
//   calibration/   frames of an evenly lit wall and frames with the lens cap on
//   photographs/   damaged photographs of the same body
//   undamaged/     the same photographs as a perfect sensor would have taken them, under the same names
//   truth.json     the true defect map, a camera profile
//   README.txt     says so, and marks the folder as one that may be written again
//
// Not for several threads on one folder.
#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>

namespace tessaly::tools {

/// The folder cannot be used; what() says why.
class SampleSetError final : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct SampleSetFolders {
  explicit SampleSetFolders(const std::filesystem::path& folder)
      : calibration(folder / "calibration"),
        photographs(folder / "photographs"),
        undamaged(folder / "undamaged"),
        truth(folder / "truth.json"),
        marker(folder / "README.txt") {}

  std::filesystem::path calibration;
  std::filesystem::path photographs;
  std::filesystem::path undamaged;
  std::filesystem::path truth;
  std::filesystem::path marker;
};

/// Writes the set of the body with that seed. The folder is made when it is missing; one that is not empty is refused
/// with SampleSetError unless it is a sample set already, whose files are then written again. Nothing is ever deleted.
void writeSampleSet(const std::filesystem::path& folder, std::uint64_t seed);

}  // namespace tessaly::tools
