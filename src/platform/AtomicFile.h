// Writes whole files that may replace an older version: preferences, profiles, logs, results of a command. A reader
// sees the old bytes or the new ones, never a mixture and never a part, also after a power failure.
//
// Stateless; safe from several threads. Throws std::system_error; then the old file, if any, is as it was.
#pragma once

#include "platform/FileSystem.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string_view>

namespace tessaly {

/// Makes `bytes` the contents of `path`. A new file gets mode 0666 & ~umask, a replaced one keeps its mode; a symbolic
/// link stays and the file it names is replaced. The folder must exist. What is no file (a terminal, a pipe,
/// /dev/null) is never replaced: the bytes are written into it.
void replaceFileAtomically(const std::filesystem::path& path, std::span<const std::byte> bytes,
                           FileSystem& system = FileSystem::system());

void replaceFileAtomically(const std::filesystem::path& path, std::string_view text,
                           FileSystem& system = FileSystem::system());

/// The same for a name that others can foresee: whatever bears it, but for a folder, is replaced itself and neither
/// opened nor followed, so that a link or a pipe that was put there leads nowhere.
void replaceEntryAtomically(const std::filesystem::path& path, std::string_view text,
                            FileSystem& system = FileSystem::system());

}  // namespace tessaly
