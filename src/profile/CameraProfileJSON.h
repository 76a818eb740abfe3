// The JSON form of a camera profile: one object whose keys are the field names.
//
// Written: two spaces of indentation, keys sorted, absent optional fields left out, a line break at the end.
// Read: keys in any order, unknown ones ignored, the last of a repeated one counts; null for an optional key means
// absent; a whole number may be written as 4.0, but neither as 4.5 nor as "4", and must fit 64 bits.
//
// Stateless; safe to call from several threads.
#pragma once

#include "profile/CameraProfile.h"

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tessaly {

/// A text that is no camera profile; what() says why and names the key, in English: pixels[3]: "x" is missing.
class ProfileDecodingError final : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Throws std::invalid_argument for what could not be read back: a confidence that is not finite, text that is not
/// UTF-8, a year outside 0 … 9999.
[[nodiscard]] std::string encodeProfile(const CameraProfile& profile);

/// Throws ProfileDecodingError. The form alone is checked, not whether the values make sense for any sensor.
[[nodiscard]] CameraProfile decodeProfile(std::string_view json);

/// Larger profile files are refused unread. A profile of a million defects has about this size; decoding needs about
/// the memory of the records besides.
inline constexpr std::int64_t maximumProfileFileSize = 64LL << 20;

/// Decodes a profile file. Throws std::system_error when it cannot be opened or read and ProfileDecodingError when it
/// is not a regular file, too large or no profile.
[[nodiscard]] CameraProfile readProfile(const std::filesystem::path& path);

}  // namespace tessaly
