// Where the user's own files live.
#pragma once

#include <filesystem>

namespace tessaly {

/// The per-user application-support folder; TESSALY_HOME replaces it when set.
[[nodiscard]] std::filesystem::path applicationSupportFolder();

/// The INI file of the settings; inside TESSALY_HOME when that is set.
[[nodiscard]] std::filesystem::path preferencesFile();

}  // namespace tessaly
