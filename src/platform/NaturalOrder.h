// The order in which a file browser lists names: case-insensitive, digits by their value ("Body 2" before "body 10").
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// Compares by ICU's root collation, numeric, secondary strength; names that collate equally compare by their bytes.
/// Not thread-safe; make one where it is needed.
class NaturalOrder {
 public:
  NaturalOrder();
  ~NaturalOrder();

  /// Negative, zero or positive as `left` sorts before, with or after `right`. Bytes that are not UTF-8 are allowed.
  [[nodiscard]] int compare(std::string_view left, std::string_view right) const;

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

/// Sorts by last path component, in natural order; stable.
void sortByFileName(std::vector<std::filesystem::path>& paths);

}  // namespace tessaly
