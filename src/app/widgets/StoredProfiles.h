// The stored profiles as both windows show them: all of them, or why they cannot be loaded and which file is at fault.
#pragma once

#include "app/widgets/LocalizedLabel.h"
#include "profile/CameraProfile.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace tessaly {

struct StoredProfiles {
  std::vector<CameraProfile> profiles;
  TextSource failure;                               ///< what the user reads; none when they could be loaded
  std::optional<std::filesystem::path> unreadable;  ///< the file to be set aside, where it is one file's fault

  [[nodiscard]] static StoredProfiles load();
};

}  // namespace tessaly
