// The files that a command makes besides DNG copies. They replace a file of that name, but never one that the command
// reads.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

namespace tessaly::cli::OutputFiles {

/// Throws UsageError when an output, empty ones aside, is a file that the command reads (`inputs` and the settings), by
/// its path or by device and inode, or is the same file as another output. Call it before anything is written.
void check(const std::vector<std::filesystem::path>& outputs, std::vector<std::filesystem::path> inputs);

/// Writes the file as a whole; throws CommandFailure with its name.
void write(const std::filesystem::path& path, std::span<const std::byte> bytes);
void write(const std::filesystem::path& path, std::string_view text);

}  // namespace tessaly::cli::OutputFiles
