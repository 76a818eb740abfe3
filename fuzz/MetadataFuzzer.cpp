// Any bytes: the metadata is read or refused with an error that names the file, reads the same twice, and survives its
// JSON form.
#include "dng/DNGError.h"
#include "dng/DNGReader.h"
#include "dng/metadata/DNGMetadataJSON.h"
#include "fuzz/FuzzFile.h"

#include <nlohmann/json.hpp>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessaly;
  const std::filesystem::path path = fuzz::writeInput(data, size);
  try {
    const DNGMetadata metadata = DNGReader::readMetadata(path);
    fuzz::require(metadata.sourceEncoding.has_value());
    fuzz::require(metadata == DNGReader::readMetadata(path));
    fuzz::require(metadata == metadataFromJSON(nlohmann::ordered_json::parse(toJSON(metadata).dump())));
  } catch (const DNGError& error) {
    fuzz::require(error.kind() == DNGError::Case::file && error.message() == "input.dng");
  }
  return 0;
}
