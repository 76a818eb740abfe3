// The files that a command makes besides DNG copies. They replace a file of that name, but never one that the command
// reads, and never a photograph. "-" stands for standard output.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

namespace tessaly::cli::OutputFiles {

/// Throws UsageError when an output, empty ones aside, is a file that the command reads (`inputs` and the settings) or
/// a photograph, is the same file as another output, or is standard output like another one. Call it before anything is
/// written.
void check(const std::vector<std::filesystem::path>& outputs, std::vector<std::filesystem::path> inputs);

[[nodiscard]] bool isStandardOutput(const std::filesystem::path& output);

/// Writes the file as a whole; throws CommandFailure with its name.
void write(const std::filesystem::path& path, std::span<const std::byte> bytes);
void write(const std::filesystem::path& path, std::string_view text);

/// Whether what a command says about its work goes to a terminal.
[[nodiscard]] bool tellsTerminal(const std::vector<std::filesystem::path>& outputs);

/// What a command says about its work, with an end of line: on standard output, or on standard error when one of its
/// outputs goes there.
void say(std::string_view text, const std::vector<std::filesystem::path>& outputs);

}  // namespace tessaly::cli::OutputFiles
