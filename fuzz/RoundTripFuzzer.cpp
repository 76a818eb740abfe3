// Any bytes that can be read: some samples are changed, the copy is written or refused, and what was written reads back
// as asked for by the bit-by-bit reader. The source never changes and nothing is left behind a refusal.
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "dng/DNGWriter.h"
#include "fuzz/FuzzFile.h"
#include "tests/support/NaiveRawReader.h"

#include <algorithm>
#include <system_error>

namespace {

using namespace tessaly;

/// Changes up to eight samples to values that others of the plane have, so that every depth and table can hold them.
void changeSome(RawSamples& samples, const std::uint8_t* data, std::size_t size) {
  for (std::size_t i = 0; i + 4 <= std::min<std::size_t>(size, 32); i += 4) {
    const auto pick = [&](std::size_t at) {
      return (std::size_t{data[size - 1 - at]} << 8 | data[size - 2 - at]) % samples.size();
    };
    samples[pick(i)] = samples[pick(i + 2)];
  }
}

void requireOnlyFile(const std::filesystem::path& folder, bool expectsCopy) {
  std::size_t files = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder))
    ++files;
  fuzz::require(files == (expectsCopy ? 1U : 0U));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::filesystem::path source = fuzz::writeInput(data, size);
  const std::filesystem::path copies = fuzz::folder() / "copies";
  const std::filesystem::path copy = copies / "copy.dng";
  std::filesystem::create_directories(copies);
  try {
    DNGMetadata metadata = DNGReader::readMetadata(source);
    if (metadata.pixelCount() > fuzz::maximumSamples || DNGReader::supportReason(metadata)) return 0;
    RawSamples samples = DNGReader::readRaw(source, metadata);
    changeSome(samples, data, size);
    DNGWriter::writeCopy(source, copy, samples, data[0] % 2 == 0, std::nullopt);
    const std::vector<std::byte> written = tests::readBytes(copy);
    const auto naive = tests::NaiveRawReader(written, DNGReader::readMetadata(copy)).readPlane();
    fuzz::require(std::equal(naive.begin(), naive.end(), samples.begin(), samples.end()));
    requireOnlyFile(copies, true);
    std::filesystem::remove(copy);
  } catch (const DNGError&) {
    requireOnlyFile(copies, false);
  }
  const auto* bytes = reinterpret_cast<const std::byte*>(data);
  const std::vector<std::byte> after = tests::readBytes(source);
  fuzz::require(std::equal(after.begin(), after.end(), bytes, bytes + size));
  return 0;
}
