#include "dng/metadata/SupportRules.h"

#include "dng/DNGError.h"
#include "platform/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace tessaly::SupportRules {
namespace {

constexpr std::array<std::string_view, 23> proprietaryExtensions{"nef", "nrw", "cr2", "cr3", "crw", "orf", "arw", "srw",
                                                                 "raf", "rw2", "pef", "3fr", "fff", "iiq", "rwl", "mos",
                                                                 "x3f", "sr2", "srf", "erf", "kdc", "dcr", "raw"};

}  // namespace

bool isProprietaryExtension(const std::string& lowerCaseExtension) {
  return std::find(proprietaryExtensions.begin(), proprietaryExtensions.end(), lowerCaseExtension) !=
         proprietaryExtensions.end();
}

void requireOpenFormat(const std::filesystem::path& url) {
  if (isProprietaryExtension(lowerCasedExtension(url))) throw DNGError::unsupported("Proprietary RAW");
}

std::optional<std::string> supportReason(const DNGMetadata& metadata) {
  switch (metadata.compression) {
    case 1:
      return std::nullopt;
    case 7:
      return "Compressed (lossless JPEG) DNG is not supported yet";
    case 34892:
      return "Lossy JPEG DNG is not supported";
    case 52546:
      return "JPEG XL DNG is not supported";
    default:
      return fmt::format("DNG compression {} is not supported", metadata.compression);
  }
}

void requireSupported(const DNGMetadata& metadata) {
  if (const auto reason = supportReason(metadata)) throw DNGError::unsupported(*reason);
}

}  // namespace tessaly::SupportRules
