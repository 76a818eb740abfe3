// What goes along with a copy besides the photograph: sidecar files, and the date of the original. Private to this
// folder.
#pragma once

#include "batch/BatchRecords.h"

#include <filesystem>
#include <vector>

namespace tessaly {

/// Gives the copy, which stands, what the options ask for; tells what could not be done. Sidecars are "a.xmp",
/// "a.dng.xmp" and "a.dng.pp3" for "a.dng"; beside the copy they bear its name and never replace anything.
[[nodiscard]] std::vector<BatchOmission> addCompanions(const std::filesystem::path& source,
                                                       const std::filesystem::path& copy, const BatchOptions& options);

}  // namespace tessaly
