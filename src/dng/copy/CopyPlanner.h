// Works out a copy before any file is made: which form it takes, where appended blocks stand, what is patched.
//
// Stateless. Nothing is read but directories, and nothing is allocated but their entries, whatever sizes they claim.
#pragma once

#include "dng/copy/CopyPlan.h"
#include "dng/copy/SourceImage.h"

#include <cstdint>
#include <optional>

namespace tessaly {

/// Whether a source is re-encoded as plain 16 bits rather than written back in its own encoding: one uncompressed strip
/// with a LinearizationTable, so that no way back through the table is needed.
[[nodiscard]] bool takesReencodedForm(const DNGMetadata& metadata, bool preserveEncoding);

/// The copy in the re-encoded form (a 16-bit raw segment and a new raw directory are appended) or in the source form
/// (nothing is), in both with an ExposureTime when one is given. Throws invalid("EXIF directory size") when there is no
/// EXIF directory to put it into, invalid("Classic TIFF output overflow") for a copy of 4 GiB and more, and
/// invalid("DNG size limit (2 GB)") for one that the reader would refuse.
[[nodiscard]] CopyPlan planCopy(const SourceImage& source, bool reencoded, std::optional<double> exposure);

/// What the reader must say of the copy; an exposure that is put in aside.
[[nodiscard]] DNGMetadata plannedMetadata(const SourceImage& source, const CopyPlan& plan);

}  // namespace tessaly
