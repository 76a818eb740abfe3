// Writes the copy of a source DNG whose raw samples are given.
//
// Stateless; safe to call from several threads for different destinations. Nothing is ever overwritten: the copy grows
// under a hidden temporary name in the destination's folder, is read back and compared, and only then gets its name.
#pragma once

#include "dng/RawPlane.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

namespace tessaly::DNGWriter {

/// Writes `samples` (the full raw plane) as a copy of `source`. `preserveEncoding` true keeps the source's own storage
/// in every case; false lets a source of one strip with a linearization table be re-encoded as plain 16 bits.
/// `exposure`, in seconds (0 to 4000), becomes the ExposureTime of the copy. Throws DNGError or std::system_error.
void writeCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
               std::span<const std::uint16_t> samples, bool preserveEncoding, std::optional<double> exposure);

}  // namespace tessaly::DNGWriter
