// An exposure time that a copy claims instead of its source's: a copy of the EXIF directory that says so.
#pragma once

#include "dng/copy/DirectoryBuilder.h"
#include "dng/tiff/DNGContainer.h"

#include <cstdint>
#include <optional>

namespace tessaly {

/// Throws invalid("Synthetic exposure range") unless the exposure, when there is one, is 0 to 4000 seconds.
void requireExposureRange(std::optional<double> seconds);

/// The EXIF directory with ExposureTime in millionths of a second. Values of more than 4 bytes stay where they are, so
/// that a maker note, which often counts offsets from the start of the file, keeps its meaning. Throws
/// invalid("EXIF directory size") when the directory is missing or cannot be read within the file.
[[nodiscard]] DirectoryBuilder exposureDirectory(const DNGContainer& container, double seconds);

/// The word behind the EXIF directory's entries.
[[nodiscard]] std::int64_t nextOfEXIF(const DNGContainer& container);

}  // namespace tessaly
