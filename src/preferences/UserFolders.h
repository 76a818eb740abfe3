// Where the user's own files live.
#pragma once

#include <filesystem>

namespace tessaly {

/// The per-user application-support folder; TESSALY_HOME replaces it when set.
[[nodiscard]] std::filesystem::path applicationSupportFolder();

/// The file of the settings; inside TESSALY_HOME when that is set.
[[nodiscard]] std::filesystem::path preferencesFile();

/// The INI file in which earlier versions kept them.
[[nodiscard]] std::filesystem::path earlierPreferencesFile();

}  // namespace tessaly
