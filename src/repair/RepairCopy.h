// The whole road of one file: read, match against the profile, repair, write the verified copy.
//
// A source streams by in slices: besides those nothing of the image is in memory. Two kinds need a whole plane: sources
// that are re-encoded, and damaged ones whose strips or tiles share bytes.
//
// Stateless; safe from several threads for different destinations, each with its own workspace.
#pragma once

#include "dng/RawPlane.h"
#include "dng/copy/StreamedCopy.h"
#include "platform/FileSystem.h"
#include "profile/CameraProfile.h"
#include "repair/RepairEngine.h"

#include <cstdint>
#include <filesystem>

namespace tessaly {

struct DNGWriteResult {
  std::filesystem::path destination;
  RepairReport report;
  std::int64_t sourceBytes = 0;  ///< size of the source after the copy was written; 0 when it cannot be told
};

/// What a worker keeps from file to file. No result depends on what an earlier file left. Used by one thread at a time.
struct RepairWorkspace {
  /// The plane of a source that cannot be streamed; empty until one comes.
  RawSamples samples;

  /// Behind the writer where no other worker needs the processors.
  Verification verification = Verification::afterwards;

  /// What a slice takes; less in tests, whose images are small.
  std::int64_t sliceBytes = SliceLayout::usualBytes;
};

namespace DNGWriter {

/// Throws what repairCopy() throws for a file that its metadata refuses; no sample is read.
void requireRepairable(const std::filesystem::path& source, const CameraProfile& profile);

/// Writes the repaired copy of `source`. Every failure leaves as DNGError::Case::file, with the name of the source (or
/// with that of the temporary file when the copy cannot be read back).
DNGWriteResult repairCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                          const CameraProfile& profile);

/// The same as one of several workers, with what it keeps from file to file.
DNGWriteResult repairCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                          const CameraProfile& profile, RepairWorkspace& workspace,
                          FileSystem& system = FileSystem::system());

}  // namespace DNGWriter
}  // namespace tessaly
