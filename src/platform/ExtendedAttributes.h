// The extended attributes of a file that belong to its user: tags, ratings, where it came from.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tessaly {

struct ExtendedAttribute {
  std::string name;
  std::vector<std::byte> value;
};

/// The attributes in the "user." namespace of an open file; none where the file system keeps none or does not tell.
[[nodiscard]] std::vector<ExtendedAttribute> userAttributes(int descriptor);

}  // namespace tessaly
