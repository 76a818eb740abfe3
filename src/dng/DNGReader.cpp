#include "dng/DNGReader.h"

#include "dng/DNGError.h"
#include "dng/PlaneView.h"
#include "dng/metadata/MetadataReader.h"
#include "dng/samples/RawPixelCodec.h"
#include "dng/samples/RawPlaneSource.h"
#include "dng/tiff/DNGContainer.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace tessaly::DNGReader {
namespace {

// Runs one reading step for a file; whatever it throws leaves with the file's name.
template <typename Step>
auto inContext(const std::filesystem::path& url, Step step) {
  try {
    return step();
  } catch (const std::exception& error) {
    throw DNGError::contextualize(error, url);
  }
}

DNGContainer openContainer(const std::filesystem::path& url) {
  requireOpenFormat(url);
  return DNGContainer(url);
}

// The file may have been replaced since `earlier` was read.
void requireSameImage(const DNGMetadata& earlier, const DNGMetadata& fresh) {
  const bool same = earlier.rawWidth == fresh.rawWidth && earlier.rawHeight == fresh.rawHeight &&
                    earlier.cameraSerial == fresh.cameraSerial && earlier.cfaLayout == fresh.cfaLayout;
  if (!same) throw DNGError::invalid("Raw plane geometry/body changed");
}

// Up to `rawByteCount` bytes from `rawOffset` on; like any read, fewer where the file ends.
std::vector<std::byte> readBlock(const InputFile& file, const DNGMetadata& metadata) {
  const auto size = static_cast<std::uint64_t>(file.size());
  if (metadata.rawOffset >= size || metadata.rawByteCount <= 0) return {};
  const std::uint64_t length = std::min(static_cast<std::uint64_t>(metadata.rawByteCount), size - metadata.rawOffset);
  std::vector<std::byte> block(length);
  block.resize(file.readAt(static_cast<std::int64_t>(metadata.rawOffset), block));
  return block;
}

// Without `wanted` all samples.
void readSamples(const DNGContainer& container, const DNGMetadata& metadata, const WantedSamples& wanted,
                 RawSamples& samples) {
  const DNGMetadata fresh = parseMetadata(container);
  requireSameImage(metadata, fresh);
  requireSupported(fresh);
  if (!metadata.sourceEncoding) {  // a record that was stored without one
    samples = RawPixelCodec::decode(readBlock(container.file(), metadata), metadata.pixelCount(), metadata.packing);
    return;
  }
  samples.clear();  // so that growing copies nothing
  samples.resize(static_cast<std::size_t>(fresh.pixelCount()));
  RawPlaneSource(container.file(), fresh).readInto(PlaneView(samples, fresh), wanted);
}

}  // namespace

DNGMetadata readMetadata(const std::filesystem::path& url) {
  return inContext(url, [&] { return parseMetadata(openContainer(url)); });
}

void readRaw(const std::filesystem::path& url, const DNGMetadata& metadata, RawSamples& samples) {
  readRaw(url, metadata, nullptr, samples);
}

void readRaw(const std::filesystem::path& url, const DNGMetadata& metadata, const WantedSamples& wanted,
             RawSamples& samples) {
  inContext(url, [&] { readSamples(openContainer(url), metadata, wanted, samples); });
}

RawSamples readRaw(const std::filesystem::path& url, const DNGMetadata& metadata) {
  RawSamples samples;
  readRaw(url, metadata, samples);
  return samples;
}

RawPlane readPlane(const std::filesystem::path& url) {
  RawPlane plane{readMetadata(url), {}};
  readRaw(url, plane.metadata, plane.samples);
  return plane;
}

std::optional<double> readFNumber(const std::filesystem::path& url) {
  try {
    const std::optional<double> number = parseFNumber(openContainer(url));
    return number && std::isfinite(*number) && *number > 0 ? number : std::nullopt;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace tessaly::DNGReader
