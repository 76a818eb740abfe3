// The CSV log of a batch: UTF-8 without a byte-order mark, lines separated by one line feed, never localised.
#pragma once

#include "batch/BatchRecords.h"
#include "platform/Timestamp.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly::RepairLog {

inline constexpr std::string_view header = "File,Status,Repaired Samples,Details";

/// One file's line, without a line feed at its end: "name","status word",samples,"details" with only the name and the
/// details quoted.
[[nodiscard]] std::string row(const BatchFileOutcome& outcome);

/// "Repair Log-2026-11-15T20-23-12Z.csv", or "Repair Log-2026-11-15T20-23-12Z 2 of 4.csv" of a shard.
[[nodiscard]] std::string fileName(Timestamp time, const std::optional<Shard>& shard = std::nullopt);

/// Writes the rows, the header line included, into the folder and returns the log's location. Atomic; replaces a log
/// of the same second, and a link that bears its name, never what that leads to. Throws std::system_error.
std::filesystem::path write(const std::vector<std::string>& rows, const std::filesystem::path& folder, Timestamp time,
                            const std::optional<Shard>& shard = std::nullopt);

/// The word for it in the log: "Success", "Failed" or "Skipped".
[[nodiscard]] std::string_view word(BatchFileOutcome::Status status);

}  // namespace tessaly::RepairLog
