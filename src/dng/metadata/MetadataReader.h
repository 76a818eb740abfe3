// Turns the directories of an open container into a DNGMetadata record, or refuses the file.
//
// For callers that go on to read samples or other entries from the same open file: they see one file even when another
// takes its name meanwhile. DNGReader::readMetadata is the same for a path.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/tiff/DNGContainer.h"

namespace tessaly {

/// Applies every acceptance rule except the one for compression, in a fixed order: the first rule that fails throws
/// its DNGError. Throws std::system_error for an I/O error. Errors are not wrapped with the file's name.
[[nodiscard]] DNGMetadata parseMetadata(const DNGContainer& container);

/// The f-number at which the frame was taken, where it is told. Throws for an EXIF directory that cannot be read.
[[nodiscard]] std::optional<double> parseFNumber(const DNGContainer& container);

}  // namespace tessaly
