// Hands out output names that never collide, ignoring letter case.
#pragma once

#include "preferences/AppPreferences.h"

#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace tessaly {

class OutputNameAllocator {
 public:
  /// `existingNames`: the names (native bytes) of all entries of the output folder, hidden ones included.
  explicit OutputNameAllocator(const std::vector<std::string>& existingNames);

  /// The name for the copy of the source called `name`: the name itself, or with `numberedCopy` the first free of
  /// "stem-2.ext", "stem-3.ext", …; nothing when the name is taken and the policy is `skip`. Where the number makes the
  /// name longer than file systems allow, the stem is shortened.
  [[nodiscard]] std::optional<std::string> allocate(const std::string& name, ExistingOutputPolicy policy);

 private:
  std::unordered_set<std::string> reserved_;  ///< lower-cased
};

}  // namespace tessaly
