// What the writer's tests share: a source made by the builder, a place for the copy, and what must hold whenever a copy
// fails.
#pragma once

#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "dng/DNGWriter.h"
#include "dng/copy/CopyWriter.h"
#include "support/FailingFileSystem.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include "tools/DNGBuilder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace tessaly::tests {

using Samples = std::vector<std::uint16_t>;

/// Values below 2^bits, the same for the same seed.
[[nodiscard]] inline Samples noise(std::int64_t count, int bits, unsigned seed = 1) {
  std::mt19937 generator(seed);
  Samples samples(static_cast<std::size_t>(count));
  for (std::uint16_t& sample : samples)
    sample = static_cast<std::uint16_t>(generator() >> (32 - bits));
  return samples;
}

/// A folder in memory where there is one: hundreds of small copies, each brought to a real disk, take minutes.
[[nodiscard]] inline std::filesystem::path fastFolder() {
  const std::filesystem::path memory = "/dev/shm";
  return is_directory(memory) ? memory : std::filesystem::temp_directory_path();
}

class WriterFixture : public testing::Test {
 protected:
  void makeSource(const tools::DNGBuilder& builder) { builder.write(source); }

  [[nodiscard]] Samples samplesOf(const std::filesystem::path& file) const {
    const RawPlane plane = DNGReader::readPlane(file);
    return {plane.samples.begin(), plane.samples.end()};
  }

  void copy(const Samples& samples, bool preserveEncoding = false, std::optional<double> exposure = std::nullopt) {
    DNGWriter::writeCopy(source, destination, samples, preserveEncoding, exposure);
  }

  /// Through the file system that a test may let fail, with the runs of changed samples when they are given.
  void copyChanged(const CopyRequest& request) {
    const CheckedCopyRequest checked(source, request);
    const SourceImage image(source);
    std::vector<std::byte> buffer(copyBufferSize);
    writeCopy(image, checked, buffer, system);
  }

  /// The technical description of the failure, or the system's words; empty when there is none.
  template <typename Action>
  [[nodiscard]] static std::string failureOf(Action action) {
    try {
      action();
      return "";
    } catch (const DNGError& error) {
      return error.what();
    } catch (const std::system_error& error) {
      return error.code().message();
    }
  }

  /// Names in the folder of the copy, hidden ones too.
  [[nodiscard]] std::vector<std::string> namesBesideTheCopy() const {
    std::vector<std::string> names;
    if (!exists(destination.parent_path())) return names;
    for (const auto& entry : std::filesystem::directory_iterator(destination.parent_path()))
      names.push_back(entry.path().filename().string());
    return names;
  }

  TemporaryFolder folder{fastFolder()};
  std::filesystem::path source = folder / "source.dng";
  std::filesystem::path destination = folder / "out" / "copy.dng";
  FailingFileSystem system;
};

}  // namespace tessaly::tests
