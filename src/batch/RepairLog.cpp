#include "batch/RepairLog.h"

#include "platform/AtomicFile.h"
#include "platform/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaly::RepairLog {

namespace {

std::string csvField(std::string_view text) {
  std::string result = "\"";
  for (const char character : text) {
    if (character == '"') result += '"';
    result += character;
  }
  return result += '"';
}

}  // namespace

std::string_view word(BatchFileOutcome::Status status) {
  switch (status) {
    case BatchFileOutcome::Status::success:
      return "Success";
    case BatchFileOutcome::Status::failed:
      return "Failed";
    case BatchFileOutcome::Status::skipped:
      break;
  }
  return "Skipped";
}

std::string row(const BatchFileOutcome& outcome) {
  return fmt::format("{},{},{},{}", csvField(displayName(outcome.source)), word(outcome.status),
                     outcome.repairedSamples, csvField(outcome.details));
}

std::string fileName(Timestamp time, const std::optional<Shard>& shard) {
  std::string stamp = iso8601Text(time);
  std::replace(stamp.begin(), stamp.end(), ':', '-');
  const std::string part = shard ? fmt::format(" {} of {}", shard->number, shard->count) : "";
  return fmt::format("Repair Log-{}{}.csv", stamp, part);
}

std::filesystem::path write(const std::vector<std::string>& rows, const std::filesystem::path& folder, Timestamp time,
                            const std::optional<Shard>& shard) {
  std::filesystem::path location = folder / fileName(time, shard);
  replaceEntryAtomically(location, fmt::format("{}", fmt::join(rows, "\n")));
  return location;
}

}  // namespace tessaly::RepairLog
