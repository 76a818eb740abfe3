#include "platform/Paths.h"

namespace tessaly {

std::filesystem::path withoutTrailingSlash(const std::filesystem::path& path) {
  return path.has_filename() || !path.has_relative_path() ? path : path.parent_path();
}

std::filesystem::path standardizedSpelling(const std::filesystem::path& absolute) {
  return withoutTrailingSlash(absolute.lexically_normal());
}

}  // namespace tessaly
