// The profiles of an earlier version of the application, in the folder that it used.
#pragma once

#include <filesystem>

namespace tessaly {

/// Copies every profile file of `legacy` into `current` unless something bears its name there or it was set aside
/// there; `legacy` stays as it is. Does nothing where there is no such folder. Repeating it is harmless. Throws
/// std::system_error.
void copyLegacyProfiles(const std::filesystem::path& legacy, const std::filesystem::path& current);

/// The name that a profile file gets when it is set aside because it cannot be read.
[[nodiscard]] std::filesystem::path asideOf(const std::filesystem::path& file);

/// Whether a name in a profile folder is a profile's: it ends in ".json" and is not hidden.
[[nodiscard]] bool isProfileFileName(const std::filesystem::path& name);

}  // namespace tessaly
