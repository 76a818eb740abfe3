// Reads a copy back from the medium and compares every byte of it with what was planned: it must describe the image
// that was to be written, its samples must decode to the written ones, and everything else must be the source's, a
// patch or an appended block. Slice by slice: no second plane is needed, and no first one where it is known which
// samples have changed.
//
// Stateless; safe from several threads.
#pragma once

#include "dng/RawPlane.h"
#include "dng/copy/ChangedSamples.h"
#include "dng/copy/CopyPlan.h"
#include "dng/copy/SourceImage.h"
#include "dng/samples/InverseLinearization.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>

namespace tessaly {

/// The samples that were to be written at a run; valid until the next call.
using WrittenSamples = std::function<std::span<const std::uint16_t>(const SampleRun& run)>;

/// What a copy must hold.
struct ExpectedCopy {
  const SourceImage& source;
  const CopyPlan& plan;
  WrittenSamples written;                         ///< asked for parts of `given` only
  ChangedSamples given;                           ///< all, where bytes are shared (segmentsShareBytes) or re-encoded
  const InverseLinearization* inverse = nullptr;  ///< set where samples were written through a table
};

/// Throws invalid("Writer re-read verification failed").
[[noreturn]] void throwOtherBytes();

/// Throws that unless the copy describes the planned image and has the planned length. Errors of reading it leave as
/// those of verifyCopy.
void requirePlannedDescription(const std::filesystem::path& copy, const SourceImage& source, const CopyPlan& plan);

/// Throws invalid("Writer re-read verification failed") when the copy holds anything else. Errors of reading it leave
/// as DNGError::Case::file with the copy's name, those of reading the source as they are.
void verifyCopy(const std::filesystem::path& copy, const ExpectedCopy& expected);

}  // namespace tessaly
