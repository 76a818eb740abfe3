// Any bytes as a camera profile: decoded or refused with an error of the decoder; what was decoded and can be written
// reads back as it was, and reads the same from a file.
#include "fuzz/FuzzFile.h"
#include "profile/CameraProfileJSON.h"

#include <optional>
#include <stdexcept>
#include <string_view>

namespace {

using namespace tessaly;

std::optional<CameraProfile> decoded(std::string_view text) {
  try {
    return decodeProfile(text);
  } catch (const ProfileDecodingError&) {
    return std::nullopt;
  }
}

/// Nothing for what only a hand-made profile holds: text that is not UTF-8, a year that ISO 8601 cannot write.
std::optional<std::string> encoded(const CameraProfile& profile) {
  try {
    return encodeProfile(profile);
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::optional<CameraProfile> profile = decoded(text);
  if (!profile) return 0;
  fuzz::require(readProfile(fuzz::writeInput(data, size)) == *profile);
  const std::optional<std::string> written = encoded(*profile);
  if (!written) return 0;
  const std::optional<CameraProfile> again = decoded(*written);
  fuzz::require(again.has_value());
  fuzz::require(encoded(*again) == written);
  return 0;
}
