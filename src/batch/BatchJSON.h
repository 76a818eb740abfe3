// The JSON form of a batch's records: the record's field names, in the record's order.
#pragma once

#include "batch/BatchRecords.h"

#include <nlohmann/json_fwd.hpp>

namespace tessaly {

/// `logURL` is a path as text; an absent optional is omitted.
[[nodiscard]] nlohmann::ordered_json batchSummaryJSON(const BatchSummary& summary);

}  // namespace tessaly
