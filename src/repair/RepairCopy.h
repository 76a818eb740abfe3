// The whole road of one file: read, match against the profile, repair, write the verified copy.
//
// Stateless; safe from several threads for different destinations, each with its own workspace.
#pragma once

#include "dng/RawPlane.h"
#include "platform/FileSystem.h"
#include "profile/CameraProfile.h"
#include "repair/DefectMap.h"
#include "repair/RepairEngine.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace tessaly {

struct DNGWriteResult {
  std::filesystem::path destination;
  RepairReport report;
  std::int64_t sourceBytes = 0;  ///< size of the source after the copy was written; 0 when it cannot be told
};

/// A profile's defects, worked out for the plane that it fits.
struct MappedDefects {
  explicit MappedDefects(const CameraProfile& from);

  CameraProfile profile;
  DefectMap map;
  std::vector<SampleRun> runs;  ///< of all samples that the map covers
};

/// What a worker keeps from file to file, because touching fresh memory costs more than repairing a photograph. It
/// grows to the largest file; no result depends on what an earlier file left. Used by one thread at a time.
struct RepairWorkspace {
  RawSamples samples;
  std::vector<std::byte, UninitializedAllocator<std::byte>> buffer;
  std::optional<MappedDefects> defects;  ///< of the profile that was used last
};

namespace DNGWriter {

/// Writes the repaired copy of `source`. Every failure leaves as DNGError::Case::file, with the name of the source (or
/// with that of the temporary file when the copy cannot be read back).
DNGWriteResult repairCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                          const CameraProfile& profile);

/// The same with memory that is kept from file to file.
DNGWriteResult repairCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                          const CameraProfile& profile, RepairWorkspace& workspace,
                          FileSystem& system = FileSystem::system());

}  // namespace DNGWriter
}  // namespace tessaly
