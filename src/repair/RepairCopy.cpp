#include "repair/RepairCopy.h"

#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "dng/copy/CopyWriter.h"
#include "dng/copy/SourceImage.h"
#include "dng/samples/RawPlaneSource.h"
#include "platform/HugePages.h"
#include "repair/DefectMap.h"
#include "repair/SliceRepair.h"

#include <cstddef>
#include <optional>
#include <system_error>
#include <vector>

namespace tessaly {
namespace {

// What a file does not fit costs no more than its metadata.
void requireRepairable(const DNGMetadata& metadata, const CameraProfile& profile) {
  DNGReader::requireSupported(metadata);
  profile.validate(metadata);
}

// Makes room for a plane without copying or clearing what an earlier file left.
PlaneView plane(RawSamples& samples, const DNGMetadata& metadata) {
  const auto size = static_cast<std::size_t>(metadata.pixelCount());
  if (samples.capacity() < size) {
    RawSamples().swap(samples);  // the old memory goes before the new one comes
    const std::size_t bytes = wholeHugePages(size * sizeof(std::uint16_t));
    samples.reserve(bytes / sizeof(std::uint16_t));
    preferHugePages({reinterpret_cast<std::byte*>(samples.data()), bytes});
  }
  samples.resize(size);
  return {samples, metadata};
}

std::int64_t sizeOf(const std::filesystem::path& file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  return error ? 0 : static_cast<std::int64_t>(size);
}

// Of all samples only those of lines can become larger than the ones around them, by their texture.
bool mayExceedDepth(const DNGMetadata& metadata, const CameraProfile& profile) {
  const bool hasTable = !metadata.sourceEncoding->linearization.empty();
  return !hasTable && !profile.lines.empty() && metadata.whiteLevel >> metadata.bitsPerSample > 0;
}

/// A file that is open, and what is to become of it.
struct RepairTask {
  const SourceImage& source;
  const std::filesystem::path& destination;
  const CameraProfile& profile;
  FileSystem& system;
};

// The whole image in memory.
RepairReport repairPlane(const RepairTask& task, RawSamples& kept) {
  const DNGMetadata& metadata = task.source.metadata();
  const PlaneView samples = plane(kept, metadata);
  RawPlaneSource(task.source.container().file(), metadata).readInto(samples);
  const DefectMap defects(task.profile, metadata.rawWidth, metadata.rawHeight);
  const RepairReport report = RepairEngine::repair(samples, metadata, defects);
  const std::vector<SampleRun> runs = defects.all.runs();
  const CheckedCopyRequest request(task.source.url(),
                                   {task.destination, samples.samples(), ChangedSamples(runs), false, std::nullopt});
  std::vector<std::byte> buffer(copyBufferSize);
  writeCopy(task.source, request, buffer, task.system);
  return report;
}

// A few rows of it at a time.
RepairReport repairSlices(const RepairTask& task, const RepairWorkspace& workspace) {
  const DNGMetadata& metadata = task.source.metadata();
  requireReadableSamples(task.source);
  std::optional<SliceRepair> repair;
  const SliceEdit edit = [&](SampleWindow& samples, const SliceRows& slice) {
    if (slice.first == 0) repair.emplace(metadata, task.profile, samples.layout().mostRows());
    repair->repair(samples, slice);
  };
  streamCopy(task.source,
             {task.destination, edit, SliceRepair::reachOf(task.profile), mayExceedDepth(metadata, task.profile),
              workspace.verification, workspace.sliceBytes},
             task.system);
  return repair->report();
}

DNGWriteResult repairOpenSource(const RepairTask& task, RepairWorkspace& workspace) {
  const DNGMetadata& metadata = task.source.metadata();
  requireRepairable(metadata, task.profile);
  const RepairReport report =
      canBeStreamed(metadata) ? repairSlices(task, workspace) : repairPlane(task, workspace.samples);
  return {task.destination, report, sizeOf(task.source.url())};
}

}  // namespace

void DNGWriter::requireRepairable(const std::filesystem::path& source, const CameraProfile& profile) {
  try {
    tessaly::requireRepairable(DNGReader::readMetadata(source), profile);
  } catch (const std::exception& error) {
    throw DNGError::contextualize(error, source);
  }
}

// The source is opened once: its metadata, its samples and the bytes of its copy come from the same file even when
// another takes its name meanwhile.
DNGWriteResult DNGWriter::repairCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                                     const CameraProfile& profile, RepairWorkspace& workspace, FileSystem& system) {
  try {
    DNGReader::requireOpenFormat(source);
    const SourceImage image(source);
    return repairOpenSource({image, destination, profile, system}, workspace);
  } catch (const std::exception& error) {
    throw DNGError::contextualize(error, source);
  }
}

DNGWriteResult DNGWriter::repairCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                                     const CameraProfile& profile) {
  RepairWorkspace workspace;
  workspace.verification = Verification::behindTheWriter;
  return repairCopy(source, destination, profile, workspace);
}

}  // namespace tessaly
