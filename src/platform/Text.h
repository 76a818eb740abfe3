// Text at the edges of the program: names that may not be UTF-8, white space, the system's own words.
#pragma once

#include <exception>
#include <filesystem>
#include <string>
#include <string_view>

namespace tessaly {

/// The bytes as UTF-8, with U+FFFD for whatever is not.
[[nodiscard]] std::string displayText(std::string_view bytes);

/// The last path component as text; of "/photos/body/" it is "body".
[[nodiscard]] std::string displayName(const std::filesystem::path& path);

[[nodiscard]] bool isValidUTF8(std::string_view bytes);

/// Without Unicode White_Space at both ends. `text` must be UTF-8.
[[nodiscard]] std::string trimmed(std::string_view text);

/// Unicode's root-locale lower-case mapping; bytes that are not UTF-8 stay as they are.
[[nodiscard]] std::string lowerCased(std::string_view bytes);

/// The extension after the last dot of the last path component, lower-cased, without the dot; empty when there is none.
[[nodiscard]] std::string lowerCasedExtension(const std::filesystem::path& path);

/// The system's words for an error number, in English whatever the locale ("No such file or directory").
[[nodiscard]] std::string systemMessage(int errorNumber);

/// The English words for any exception that is no DNGError: systemMessage for errors of the system, else what().
[[nodiscard]] std::string exceptionMessage(const std::exception& error);

}  // namespace tessaly
