// A file in memory whose bytes are those of one fuzzer input, and what the targets share.
#pragma once

#include "dng/DNGMetadata.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace tessaly::fuzz {

/// Planes above this are skipped: they cost seconds and show nothing that a small one does not.
inline constexpr std::int64_t maximumSamples = 1 << 20;

/// One folder a process, in memory where the system has a file system there.
inline const std::filesystem::path& folder() {
  static const std::filesystem::path memory("/dev/shm");
  static const tests::TemporaryFolder folder(std::filesystem::exists(memory) ? memory
                                                                             : std::filesystem::temp_directory_path());
  return folder.path();
}

/// Writes the input as a file and returns its path, which is the same for every input.
inline std::filesystem::path writeInput(const std::uint8_t* data, std::size_t size) {
  const auto* bytes = reinterpret_cast<const std::byte*>(data);
  std::filesystem::path path = folder() / "input.dng";
  tools::writeBytes(path, {bytes, bytes + size});
  return path;
}

/// Ends the run when a promise is broken, so that libFuzzer keeps the input.
inline void require(bool promise) {
  if (!promise) std::abort();
}

}  // namespace tessaly::fuzz
