#include "dng/DNGWriter.h"

#include "dng/copy/CopyWriter.h"

#include <vector>

namespace tessaly::DNGWriter {

void writeCopy(const std::filesystem::path& source, const std::filesystem::path& destination,
               std::span<const std::uint16_t> samples, bool preserveEncoding, std::optional<double> exposure) {
  const CheckedCopyRequest request(source, {destination, samples, ChangedSamples(), preserveEncoding, exposure});
  const SourceImage image(source);
  std::vector<std::byte> buffer(copyBufferSize);
  tessaly::writeCopy(image, request, buffer, FileSystem::system());
}

}  // namespace tessaly::DNGWriter
