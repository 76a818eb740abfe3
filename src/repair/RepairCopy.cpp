#include "repair/RepairCopy.h"

#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "dng/copy/CopyWriter.h"
#include "dng/copy/SourceImage.h"
#include "dng/samples/RawPlaneSource.h"
#include "platform/HugePages.h"

#include <system_error>

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

// The files of a batch share one profile, and a profile that fits two files fits planes of one size.
const MappedDefects& mapped(const CameraProfile& profile, std::optional<MappedDefects>& last) {
  const bool isKnown = last && last->profile == profile;
  return isKnown ? *last : last.emplace(profile);
}

std::int64_t sizeOf(const std::filesystem::path& file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  return error ? 0 : static_cast<std::int64_t>(size);
}

DNGWriteResult repairOpenSource(const SourceImage& source, const std::filesystem::path& destination,
                                const CameraProfile& profile, RepairWorkspace& workspace, FileSystem& system) {
  const DNGMetadata& metadata = source.metadata();
  requireRepairable(metadata, profile);
  const PlaneView samples = plane(workspace.samples, metadata);
  RawPlaneSource(source.container().file(), metadata).readInto(samples);
  const MappedDefects& defects = mapped(profile, workspace.defects);
  const RepairReport report = RepairEngine::repair(samples, metadata, defects.map);
  const CheckedCopyRequest request(source.url(),
                                   {destination, samples.samples(), ChangedSamples(defects.runs), false, std::nullopt});
  workspace.buffer.resize(copyBufferSize);
  writeCopy(source, request, workspace.buffer, system);
  return {destination, report, sizeOf(source.url())};
}

}  // namespace

MappedDefects::MappedDefects(const CameraProfile& from)
    : profile(from), map(from, from.rawWidth, from.rawHeight), runs(map.all.runs()) {}

// The source is opened once: its metadata, its samples and the bytes of its copy come from the same file even when
// another takes its name meanwhile.
DNGWriteResult DNGWriter::repairCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                                     const CameraProfile& profile, RepairWorkspace& workspace, FileSystem& system) {
  try {
    DNGReader::requireOpenFormat(source);
    return repairOpenSource(SourceImage(source), destination, profile, workspace, system);
  } catch (const std::exception& error) {
    throw DNGError::contextualize(error, source);
  }
}

DNGWriteResult DNGWriter::repairCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
                                     const CameraProfile& profile) {
  RepairWorkspace workspace;
  return repairCopy(source, destination, profile, workspace);
}

}  // namespace tessaly
