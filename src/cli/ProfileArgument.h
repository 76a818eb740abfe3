// The camera profile that an argument names: a profile file's path, a stored profile's id, or its name.
#pragma once

#include "profile/CameraProfile.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tessaly::cli {

struct ProfileArgument {
  CameraProfile profile;
  std::vector<std::filesystem::path> files;  ///< that were read to find it
  bool isStored = false;                     ///< found in the profile store, not given by a path
};

/// The regular file directly in the profile store that the argument names, by its path or, where it is no path to
/// anything else, by its name alone; nothing when there is none.
[[nodiscard]] std::optional<std::filesystem::path> storedFile(const std::string& argument);

/// A path is tried first, and then the store is neither opened nor created. Throws CommandFailure.
[[nodiscard]] ProfileArgument loadProfile(const std::string& argument);

}  // namespace tessaly::cli
