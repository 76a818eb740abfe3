// Reads a copy back with the program's own reader and compares every sample with what was to be written. No second
// plane is needed: the copy is compared slice by slice.
//
// Stateless; safe from several threads.
#pragma once

#include "dng/DNGMetadata.h"
#include "dng/PlaneView.h"
#include "dng/samples/InverseLinearization.h"

#include <cstdint>
#include <filesystem>
#include <span>

namespace tessaly {

/// What a copy must read back as.
struct ExpectedImage {
  const DNGMetadata& metadata;  ///< of the source: dimensions and mosaic
  ConstPlaneView samples;
  const InverseLinearization* inverse = nullptr;  ///< set where samples were written through a table
};

/// Throws invalid("Writer re-read verification failed") when the copy is another image. Errors of reading it leave as
/// DNGError::Case::file with the copy's name.
void verifyCopy(const std::filesystem::path& copy, const ExpectedImage& expected);

}  // namespace tessaly
