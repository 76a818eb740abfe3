// The way back through a LinearizationTable: from a sample to the code that a file stores for it.
//
// A table may skip values and may repeat them, so the way back is a choice: the code whose table value is nearest, of
// equally near ones the smallest. With the table 0, 10, 10, 30 the sample 10 becomes code 1, 19 becomes code 1 as well,
// 20 (as near to 10 as to 30) becomes code 1 and 21 becomes code 3.
//
// Immutable after construction; safe to share between threads.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tessaly {

class InverseLinearization {
 public:
  /// Throws unsupported("Inverse nonmonotonic LinearizationTable") unless the table, which is not empty, never falls or
  /// never rises, and unsupported("Raw bit depth <bits>"). Codes of more than `bits` bits are never given, because the
  /// file cannot store them.
  InverseLinearization(std::span<const std::uint16_t> table, std::int64_t bits);

  /// The code that stands for a sample.
  [[nodiscard]] std::uint16_t code(std::uint16_t sample) const { return nearest(sample).code; }

  /// The same where `stored` stood: a code that stands for the sample already is kept, although another of the same
  /// value may be smaller.
  [[nodiscard]] std::uint16_t code(std::uint16_t sample, std::uint16_t stored) const {
    return stored < table_.size() && table_[stored] == sample ? stored : code(sample);
  }

  /// The sample that is read back where `sample` was written.
  [[nodiscard]] std::uint16_t readBack(std::uint16_t sample) const { return nearest(sample).value; }

 private:
  struct Step {
    std::uint16_t value = 0;
    std::uint16_t code = 0;  // the smallest with this value
  };

  [[nodiscard]] const Step& nearest(std::uint16_t sample) const;

  std::vector<std::uint16_t> table_;
  std::vector<Step> steps_;  // by rising value
};

}  // namespace tessaly
