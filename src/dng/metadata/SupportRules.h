// Which photographs are refused although nothing is wrong with them: by their name before they are opened, by their
// compression before their samples are read.
//
// Stateless; safe from several threads. DNGReader offers them to the other folders.
#pragma once

#include "dng/DNGMetadata.h"

#include <filesystem>
#include <optional>
#include <string>

namespace tessaly::SupportRules {

/// The 23 extensions, lower-case, of cameras' own raw formats, which are refused unread.
[[nodiscard]] bool isProprietaryExtension(const std::string& lowerCaseExtension);

/// Throws unsupported("Proprietary RAW") for a file with such an extension.
void requireOpenFormat(const std::filesystem::path& url);

/// Why the samples of this image cannot be read (its compression); nothing when they can.
[[nodiscard]] std::optional<std::string> supportReason(const DNGMetadata& metadata);

/// Throws unsupported with the supportReason, if there is one.
void requireSupported(const DNGMetadata& metadata);

}  // namespace tessaly::SupportRules
