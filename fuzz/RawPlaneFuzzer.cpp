// Any bytes that have metadata: the decoder and the bit-by-bit reader give the same samples or the same refusal, and
// visiting the samples gives those that were read.
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "dng/samples/RawPlaneSource.h"
#include "fuzz/FuzzFile.h"
#include "tests/support/NaiveRawReader.h"

#include <algorithm>
#include <string>

namespace {

using namespace tessaly;

/// The samples, or the innermost error's text.
template <typename Read>
std::string outcome(std::vector<std::uint16_t>& samples, Read read) {
  try {
    const auto plane = read();
    samples.assign(plane.begin(), plane.end());
    return "";
  } catch (const DNGError& error) {
    return error.innermost().what();
  }
}

void requireVisits(const InputFile& file, const DNGMetadata& metadata, const std::vector<std::uint16_t>& samples) {
  const ConstPlaneView plane(samples, metadata);
  RawPlaneSource(file, metadata).forEachRun([&](const SampleRun& run, std::span<const std::uint16_t> visited) {
    const auto read = plane.run(run);
    fuzz::require(std::equal(visited.begin(), visited.end(), read.begin(), read.end()));
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::filesystem::path path = fuzz::writeInput(data, size);
  DNGMetadata metadata;
  try {
    metadata = DNGReader::readMetadata(path);
  } catch (const DNGError&) {
    return 0;
  }
  if (metadata.pixelCount() > fuzz::maximumSamples || DNGReader::supportReason(metadata)) return 0;
  const auto* bytes = reinterpret_cast<const std::byte*>(data);
  std::vector<std::uint16_t> fast, naive;
  const std::string fastError = outcome(fast, [&] { return DNGReader::readRaw(path, metadata); });
  const std::string naiveError = outcome(naive, [&] {
    return tests::NaiveRawReader({bytes, size}, metadata).readPlane();
  });
  fuzz::require(fastError == naiveError);
  fuzz::require(fast == naive);
  if (fastError.empty()) requireVisits(InputFile(path), metadata, fast);
  return 0;
}
