// Columns that a result or a profile holds twice: a line that lies inside a full column, and how that is told.
//
// Pure apart from reading the interface's language; safe from any thread.
#pragma once

#include "calibration/CalibrationRecords.h"
#include "profile/CameraProfile.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly::DuplicateColumns {

/// The lines whose columns and rows all belong to another line that is a full column, each with the first column of
/// that one, in raw coordinates. Of two equal columns the later one is inside the earlier.
[[nodiscard]] std::map<UUID, std::int64_t> linesInsideColumns(const std::vector<CalibrationCandidate>& candidates,
                                                              const DNGMetadata& metadata);

/// How many lines of a profile lie inside another one.
[[nodiscard]] std::int64_t linesInsideColumns(const CameraProfile& profile);

/// How many candidates of a result lie inside another one.
[[nodiscard]] std::int64_t count(const CalibrationResult& result);

/// How such a line is marked: "inside the full column at x 3021", in active coordinates.
[[nodiscard]] std::string mark(std::int64_t column, const DNGMetadata& metadata);

/// "One column lies inside another."; empty for none.
[[nodiscard]] std::string sentence(std::int64_t count);

/// A text with that sentence, when there is one, behind it after `gap`. Chinese sets no blank between sentences.
[[nodiscard]] std::string behind(const std::string& text, std::string_view gap, std::int64_t count);

}  // namespace tessaly::DuplicateColumns
