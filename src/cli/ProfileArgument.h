// The camera profile that an argument names: a profile file's path, a stored profile's id, or its name.
#pragma once

#include "profile/CameraProfile.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tessaly::cli {

struct ProfileArgument {
  CameraProfile profile;
  std::vector<std::filesystem::path> files;  ///< that were read to find it
  bool isStored = false;                     ///< found in the profile store, not given by a path
};

/// A path is tried first, and then the store is neither opened nor created. Throws CommandFailure.
[[nodiscard]] ProfileArgument loadProfile(const std::string& argument);

}  // namespace tessaly::cli
