// Gives a file its final name without ever replacing what may already bear that name.
#pragma once

#include "platform/FileSystem.h"

#include <filesystem>

namespace tessaly {

/// Moves `from` to the name `to` on the same file system. Throws std::system_error: with EEXIST when something bears
/// that name already, however late it appeared; it stays as it is, and so does `from`.
///
/// Media that can neither rename without replacing nor link get an empty placeholder under the final name first, which
/// the file then replaces; there, and only there, a hard stop in between leaves that empty file.
void moveWithoutReplacing(FileSystem& system, const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace tessaly
