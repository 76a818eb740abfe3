// The JSON form of what the writing of a copy reports: the records' field names, in the records' order.
#pragma once

#include "repair/RepairCopy.h"

#include <nlohmann/json_fwd.hpp>

namespace tessaly::cli {

[[nodiscard]] nlohmann::ordered_json toJSON(const DNGWriteResult& result);

}  // namespace tessaly::cli
