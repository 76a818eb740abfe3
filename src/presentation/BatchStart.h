// What must hold before a batch starts, and where it writes: the rules of the batch tab, shared with the command line.
#pragma once

#include "batch/BatchRecords.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace tessaly::BatchStart {

/// The first thing that is missing, as the user is told; nothing when a profile and an input folder were chosen.
[[nodiscard]] std::optional<std::string> missingChoice(bool hasProfile, bool hasInputFolder);

/// The folder a batch writes into: the chosen one; else, when the preferences say so, the custom one; else the default
/// inside the input folder. Throws OutputFolderPermission when the custom one cannot be used.
[[nodiscard]] std::filesystem::path outputFolder(const std::optional<std::filesystem::path>& chosen,
                                                 const std::filesystem::path& inputFolder);

/// What the user is told when both are one folder; nothing when they are two.
[[nodiscard]] std::optional<std::string> sameFolder(const std::filesystem::path& inputFolder,
                                                    const std::filesystem::path& outputFolder);

/// The options of a run that starts now, from the preferences.
[[nodiscard]] BatchOptions options();

/// How many files to repair at once: 0 is automatic, any other number is meant.
[[nodiscard]] std::int64_t workers(std::int64_t choice);

}  // namespace tessaly::BatchStart
