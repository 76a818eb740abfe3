#include "dng/DNGError.h"
#include "dng/RawLimits.h"
#include "dng/metadata/MetadataRules.h"
#include "dng/samples/BitDepth.h"
#include "dng/tiff/Photometric.h"
#include "dng/tiff/TIFFTags.h"

#include <fmt/format.h>

namespace tessaly::MetadataRules {
namespace {

void readDimensions(const DirectoryTags& raw, DNGMetadata& metadata) {
  metadata.rawWidth = raw.value(TIFFTag::imageWidth, 0);
  metadata.rawHeight = raw.value(TIFFTag::imageLength, 0);
  if (!isRawSize(metadata.rawWidth, metadata.rawHeight)) throw DNGError::invalid("Raw dimensions");
}

void readDepth(const DirectoryTags& raw, DNGMetadata& metadata) {
  if (raw.count(TIFFTag::bitsPerSample) != 1) throw DNGError::unsupported("One BitsPerSample value is required");
  metadata.bitsPerSample = raw.value(TIFFTag::bitsPerSample, 0);
  metadata.compression = raw.value(TIFFTag::compression, 1);
  metadata.photometricInterpretation = raw.value(TIFFTag::photometricInterpretation, 0);
  requireSupportedBitDepth(metadata.bitsPerSample);
  metadata.packing = metadata.bitsPerSample == 12 ? RawPacking::packed12MSB : RawPacking::littleEndian16;
}

void readPlanes(const DirectoryTags& raw, DNGMetadata& metadata) {
  metadata.samplesPerPixel = raw.value(TIFFTag::samplesPerPixel, 1);
  if (metadata.samplesPerPixel != 1) throw DNGError::unsupported("Multiple raw samples per pixel");
  if (raw.value(TIFFTag::planarConfiguration, 1) != 1) throw DNGError::unsupported("Planar raw");
}

std::optional<CFALayout> readColours(const DirectoryTags& raw, std::int64_t photometric) {
  switch (photometric) {
    case Photometric::cfa:
      return readBayerLayout(raw);
    case Photometric::blackIsZero:
    case Photometric::linearRaw:
      return std::nullopt;
    default:
      throw DNGError::unsupported(fmt::format("Raw photometric {}", photometric));
  }
}

}  // namespace

void readFormat(const DirectoryTags& raw, DNGMetadata& metadata) {
  readDimensions(raw, metadata);
  readDepth(raw, metadata);
  readPlanes(raw, metadata);
  metadata.cfaLayout = readColours(raw, metadata.photometricInterpretation);
}

}  // namespace tessaly::MetadataRules
