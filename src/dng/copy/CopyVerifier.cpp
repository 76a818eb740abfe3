#include "dng/copy/CopyVerifier.h"

#include "dng/DNGError.h"
#include "dng/metadata/MetadataReader.h"
#include "dng/metadata/SupportRules.h"
#include "dng/samples/RawPlaneSource.h"
#include "dng/tiff/DNGContainer.h"

#include <algorithm>

namespace tessaly {
namespace {

bool hasGeometryOf(const DNGMetadata& copy, const ExpectedImage& expected) {
  const DNGMetadata& source = expected.metadata;
  return copy.rawWidth == source.rawWidth && copy.rawHeight == source.rawHeight && copy.cfaLayout == source.cfaLayout;
}

// A table may not hold the very sample that was written; then the one that the written code stands for is right.
bool matchesThroughTable(const RawPlaneSource& copy, const ExpectedImage& expected) {
  bool matches = true;
  copy.forEachRun([&](const SampleRun& run, std::span<const std::uint16_t> samples) {
    const auto isRight = [&](std::uint16_t read, std::uint16_t written) {
      return read == expected.inverse->readBack(written);
    };
    const auto written = expected.samples.run(run);
    const bool isEqual = std::equal(samples.begin(), samples.end(), written.begin());
    matches = matches && (isEqual || std::equal(samples.begin(), samples.end(), written.begin(), isRight));
  });
  return matches;
}

bool holds(const DNGContainer& copy, const ExpectedImage& expected) {
  const DNGMetadata metadata = parseMetadata(copy);
  SupportRules::requireSupported(metadata);
  if (!hasGeometryOf(metadata, expected)) return false;
  const RawPlaneSource samples(copy.file(), metadata);
  return expected.inverse != nullptr ? matchesThroughTable(samples, expected) : samples.matches(expected.samples);
}

bool readsBackAs(const std::filesystem::path& copy, const ExpectedImage& expected) {
  try {
    return holds(DNGContainer(copy), expected);
  } catch (const std::exception& error) {
    throw DNGError::contextualize(error, copy);
  }
}

}  // namespace

void verifyCopy(const std::filesystem::path& copy, const ExpectedImage& expected) {
  if (!readsBackAs(copy, expected)) throw DNGError::invalid("Writer re-read verification failed");
}

}  // namespace tessaly
