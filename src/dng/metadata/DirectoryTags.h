// One directory of an open container, asked by tag.
//
// Holds references; the container must outlive it. Used by one thread at a time.
#pragma once

#include "dng/tiff/DNGContainer.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

class DirectoryTags {
 public:
  DirectoryTags(const DNGContainer& container, const TIFFDirectory& directory)
      : container_(container), directory_(directory) {}

  [[nodiscard]] const DNGContainer& container() const { return container_; }
  [[nodiscard]] const TIFFDirectory& directory() const { return directory_; }
  [[nodiscard]] const TIFFField* field(std::int64_t tag) const { return directory_.field(tag); }
  [[nodiscard]] bool has(std::int64_t tag) const { return field(tag) != nullptr; }

  /// The tag's first value as an integer, or the default where the tag is absent or has no value.
  [[nodiscard]] std::int64_t value(std::int64_t tag, std::int64_t byDefault) const {
    return container_.firstInt(field(tag)).value_or(byDefault);
  }

  /// The number of values as the entry claims it, before any of them is read; 0 for an absent tag.
  [[nodiscard]] std::int64_t count(std::int64_t tag) const { return has(tag) ? field(tag)->count : 0; }

  [[nodiscard]] std::vector<std::int64_t> ints(std::int64_t tag) const { return container_.ints(field(tag)); }
  [[nodiscard]] std::vector<double> numbers(std::int64_t tag) const { return container_.numbers(field(tag)); }
  [[nodiscard]] std::optional<std::string> string(std::int64_t tag) const { return container_.string(field(tag)); }

 private:
  const DNGContainer& container_;
  const TIFFDirectory& directory_;
};

}  // namespace tessaly
