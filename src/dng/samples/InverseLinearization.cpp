#include "dng/samples/InverseLinearization.h"

#include "dng/DNGError.h"
#include "dng/samples/BitDepth.h"

#include <algorithm>
#include <cassert>
#include <functional>

namespace tessaly {
namespace {

bool isMonotonic(std::span<const std::uint16_t> table) {
  return std::is_sorted(table.begin(), table.end()) || std::is_sorted(table.begin(), table.end(), std::greater<>());
}

}  // namespace

InverseLinearization::InverseLinearization(std::span<const std::uint16_t> table, std::int64_t bits)
    : table_(table.begin(), table.end()) {
  assert(!table.empty());
  requireSupportedBitDepth(bits);
  if (!isMonotonic(table)) throw DNGError::unsupported("Inverse nonmonotonic LinearizationTable");
  const std::size_t codes = std::min(table.size(), std::size_t{1} << bits);
  for (std::size_t code = 0; code < codes; ++code) {
    const bool repeats = !steps_.empty() && steps_.back().value == table[code];
    if (!repeats) steps_.push_back({table[code], static_cast<std::uint16_t>(code)});
  }
  if (steps_.front().value > steps_.back().value) std::reverse(steps_.begin(), steps_.end());
}

const InverseLinearization::Step& InverseLinearization::nearest(std::uint16_t sample) const {
  const auto above = std::lower_bound(steps_.begin(), steps_.end(), sample,
                                      [](const Step& step, std::uint16_t value) { return step.value < value; });
  if (above == steps_.begin()) return *above;
  const auto below = above - 1;
  if (above == steps_.end()) return *below;
  const int toBelow = sample - below->value;
  const int toAbove = above->value - sample;
  if (toBelow == toAbove) return below->code < above->code ? *below : *above;
  return toBelow < toAbove ? *below : *above;
}

}  // namespace tessaly
