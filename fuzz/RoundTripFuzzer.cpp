// Any bytes that can be read: some samples are changed, the copy is written or refused, and what was written reads back
// as asked for by the bit-by-bit reader. The source never changes, nothing is left behind a refusal, and it makes no
// difference whether the writer is told which samples have changed.
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "dng/copy/CopyWriter.h"
#include "fuzz/FuzzFile.h"
#include "tests/support/NaiveRawReader.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <vector>

namespace {

using namespace tessaly;

/// Changes up to eight samples to values that others of the plane have, so that every depth and table can hold them.
/// Gives the changed places.
std::vector<SampleRun> changeSome(RawSamples& samples, std::int64_t width, std::span<const std::uint8_t> data) {
  std::set<std::size_t> places;
  for (std::size_t i = 0; i + 4 <= std::min<std::size_t>(data.size(), 32); i += 4) {
    const auto pick = [&](std::size_t at) {
      return (std::size_t{data[data.size() - 1 - at]} << 8 | data[data.size() - 2 - at]) % samples.size();
    };
    samples[pick(i)] = samples[pick(i + 2)];
    places.insert(pick(i));
  }
  std::vector<SampleRun> runs;
  for (const std::size_t place : places)
    runs.push_back({static_cast<std::int64_t>(place) / width, static_cast<std::int64_t>(place) % width, 1});
  return runs;
}

std::size_t filesIn(const std::filesystem::path& folder) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

/// The bytes of the copy, which is removed again; none when it is refused.
std::vector<std::byte> write(const std::filesystem::path& source, const CopyRequest& request) {
  std::vector<std::byte> bytes;
  std::vector<std::byte> buffer(copyBufferSize);
  try {
    const CheckedCopyRequest checked(source, request);
    writeCopy(SourceImage(source), checked, buffer, FileSystem::system());
    bytes = tests::readBytes(request.destination);
    fuzz::require(filesIn(request.destination.parent_path()) == 1);
    const DNGMetadata metadata = DNGReader::readMetadata(request.destination);
    const auto naive = tests::NaiveRawReader(bytes, metadata).readPlane();
    fuzz::require(std::equal(naive.begin(), naive.end(), request.samples.begin(), request.samples.end()));
    if (request.exposure) fuzz::require(metadata.exposureSeconds == request.exposure);
    std::filesystem::remove(request.destination);
  } catch (const DNGError&) {
    fuzz::require(filesIn(request.destination.parent_path()) == 0);
  }
  return bytes;
}

void tryRoundTrip(const std::filesystem::path& source, std::span<const std::uint8_t> data) {
  const DNGMetadata metadata = DNGReader::readMetadata(source);
  if (metadata.pixelCount() > fuzz::maximumSamples || DNGReader::supportReason(metadata)) return;
  RawSamples samples = DNGReader::readRaw(source, metadata);
  const std::vector<SampleRun> runs = changeSome(samples, metadata.rawWidth, data);
  CopyRequest request{fuzz::folder() / "copies" / "copy.dng", samples, ChangedSamples(), data.back() % 2 == 0, {}};
  if (data.back() % 4 == 0) request.exposure = 0.5;
  const std::vector<std::byte> general = write(source, request);
  request.changed = ChangedSamples(runs);
  fuzz::require(write(source, request) == general);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::filesystem::path source = fuzz::writeInput(data, size);
  std::filesystem::create_directories(fuzz::folder() / "copies");
  try {
    tryRoundTrip(source, {data, size});
  } catch (const DNGError&) {
    // Refused by the reader.
  }
  const auto* bytes = reinterpret_cast<const std::byte*>(data);
  const std::vector<std::byte> after = tests::readBytes(source);
  fuzz::require(std::equal(after.begin(), after.end(), bytes, bytes + size));
  return 0;
}
