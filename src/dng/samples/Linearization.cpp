#include "dng/samples/Linearization.h"

#include "dng/DNGError.h"

#include <algorithm>

namespace tessaly {

void linearize(std::span<const std::uint16_t> table, std::span<std::uint16_t> codes) {
  if (table.empty() || codes.empty()) return;
  std::uint16_t largest = 0;
  for (const std::uint16_t code : codes)
    largest = std::max(largest, code);
  if (largest >= table.size()) throw DNGError::invalid("Sample exceeds LinearizationTable");
  for (std::uint16_t& code : codes)
    code = table[code];
}

}  // namespace tessaly
