// What became of a batch and of each of its files, as JSON.
#pragma once

#include "batch/BatchRecords.h"

#include <nlohmann/json_fwd.hpp>

#include <vector>

namespace tessaly::cli {

/// One file: "source", "output" where there is one, "status" as the log says it ("Fits" and "Refused" of a rehearsal),
/// "repairedSamples" and "details", and "lacking" where the copy stands without something that belongs to it.
[[nodiscard]] nlohmann::ordered_json toJSON(const BatchFileOutcome& outcome, bool isRehearsal);

/// The summary's object with "files", in the order in which they were finished.
[[nodiscard]] nlohmann::ordered_json toJSON(const BatchSummary& summary, std::vector<nlohmann::ordered_json> files);

}  // namespace tessaly::cli
