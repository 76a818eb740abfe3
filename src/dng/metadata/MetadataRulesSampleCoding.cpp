#include "dng/DNGError.h"
#include "dng/metadata/MetadataRules.h"
#include "dng/tiff/TIFFTags.h"

#include <fmt/format.h>

namespace tessaly::MetadataRules {
namespace {

constexpr std::int64_t maximumTableSize = 65'536;
constexpr std::int64_t tableValueLimit = 65'536;

std::vector<std::uint16_t> readLinearization(const DirectoryTags& raw) {
  std::vector<std::uint16_t> table;
  if (!raw.has(TIFFTag::linearizationTable)) return table;
  const std::int64_t count = raw.count(TIFFTag::linearizationTable);
  if (count < 1 || count > maximumTableSize) throw DNGError::invalid("LinearizationTable size");
  table.reserve(static_cast<std::size_t>(count));
  for (const std::int64_t value : raw.ints(TIFFTag::linearizationTable)) {
    if (value < 0 || value >= tableValueLimit) throw DNGError::invalid("LinearizationTable");
    table.push_back(static_cast<std::uint16_t>(value));
  }
  return table;
}

}  // namespace

void readSampleCoding(const DirectoryTags& raw, DNGMetadata& metadata) {
  const std::int64_t fillOrder = raw.value(TIFFTag::fillOrder, 1);
  if (fillOrder != 1 && fillOrder != 2) throw DNGError::unsupported(fmt::format("FillOrder {}", fillOrder));
  metadata.sourceEncoding->fillOrder = fillOrder;
  metadata.sourceEncoding->linearization = readLinearization(raw);
}

}  // namespace tessaly::MetadataRules
