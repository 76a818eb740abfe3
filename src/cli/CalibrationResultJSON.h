// The JSON form of a calibration result: the records' field names, in the records' order; absent optionals omitted.
#pragma once

#include "calibration/CalibrationRecords.h"

#include <nlohmann/json_fwd.hpp>

#include <set>

namespace tessaly::cli {

/// `included` holds the ids of the candidates that are chosen for a profile. Of the preview only the size is told.
/// Where there is a second opinion its findings follow under "secondOpinion", and candidates that it could judge gain
/// "confirmed".
[[nodiscard]] nlohmann::ordered_json toJSON(const CalibrationResult& result, const std::set<UUID>& included);

}  // namespace tessaly::cli
