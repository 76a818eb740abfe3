// The settings and the window's state that earlier versions kept in an INI file, taken over once.
#pragma once

#include <filesystem>

namespace tessaly {

/// Adds what the INI file holds to the settings file, where a key that is there already stays as it is, and renames it
/// to its name with ".earlier". Does nothing where there is no such file, or when the settings cannot be written.
void takeOverEarlierSettings(const std::filesystem::path& earlier, const std::filesystem::path& file);

}  // namespace tessaly
