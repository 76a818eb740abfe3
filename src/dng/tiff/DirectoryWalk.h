// Finds every image file directory that a TIFF file reaches through its chain and through SubIFDs.
#pragma once

#include "dng/tiff/TIFFBytes.h"
#include "dng/tiff/TIFFDirectory.h"

#include <vector>

namespace tessaly {

/// The directories in the order of the walk: the sub-directories of a directory before the next one of its chain, the
/// last listed sub-directory first. At most 256; a directory that is reached twice is an error, as is everything that
/// is out of limits. Throws DNGError, or std::system_error where the file cannot be read.
[[nodiscard]] std::vector<TIFFDirectory> walkDirectories(const TIFFBytes& bytes);

}  // namespace tessaly
