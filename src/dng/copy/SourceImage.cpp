#include "dng/copy/SourceImage.h"

#include "dng/DNGError.h"
#include "dng/metadata/MetadataReader.h"
#include "dng/metadata/SupportRules.h"

#include <utility>

namespace tessaly {
namespace {

DNGMetadata metadataOf(const DNGContainer& container, const std::filesystem::path& url) {
  try {
    SupportRules::requireOpenFormat(url);
    return parseMetadata(container);
  } catch (const std::exception& error) {
    throw DNGError::contextualize(error, url);
  }
}

}  // namespace

SourceImage::SourceImage(std::filesystem::path url)
    : url_(std::move(url)),
      container_(url_),
      rawDirectory_(container_.rawDirectory()),
      metadata_(metadataOf(container_, url_)) {}

}  // namespace tessaly
