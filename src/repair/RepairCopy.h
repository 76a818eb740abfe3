// The whole road of one file: read, match against the profile, repair, write the verified copy.
//
// Stateless; safe from several threads for different destinations, each with its own workspace.
#pragma once

#include "dng/RawPlane.h"
#include "platform/FileSystem.h"
#include "profile/CameraProfile.h"
#include "repair/RepairEngine.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace tessaly {

struct DNGWriteResult {
  std::filesystem::path destination;
  RepairReport report;
  std::int64_t sourceBytes = 0;  ///< size of the source after the copy was written; 0 when it cannot be told
};

/// Memory that a worker keeps from file to file, because touching fresh memory costs more than repairing a photograph.
/// It grows to the largest file and holds nothing that a later file sees. Used by one thread at a time.
struct RepairWorkspace {
  RawSamples samples;
  std::vector<std::byte, UninitializedAllocator<std::byte>> buffer;
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
