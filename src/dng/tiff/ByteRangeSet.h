// A set of byte positions of a file, kept as disjoint ranges. Parsing remembers in it what it has already looked at,
// so that a hostile file cannot have the same 64 MB searched through a thousand entries that all point to them.
//
// A value; not synchronized.
#pragma once

#include <cstdint>
#include <map>

namespace tessaly {

class ByteRangeSet {
 public:
  /// Adds the positions from `begin` up to, but not including, `end`.
  void insert(std::int64_t begin, std::int64_t end);

  /// The end of the stretch of positions in the set that starts at `begin`; `begin` itself when it is not in the set.
  [[nodiscard]] std::int64_t endOfStretch(std::int64_t begin) const;

  /// The begin of the stretch of positions in the set that stops before `end`; `end` itself when there is none.
  [[nodiscard]] std::int64_t beginOfStretch(std::int64_t end) const;

 private:
  std::map<std::int64_t, std::int64_t> ends_;  // by begin; neither overlapping nor touching
};

}  // namespace tessaly
