// The one median of the detectors.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

namespace tessaly {

/// The element at count / 2 of the ascending order: of an even number the upper one of the middle two. Reorders
/// `values`, of which there must be at least one.
[[nodiscard]] inline double upperMedian(std::vector<double>& values) {
  assert(!values.empty());
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace tessaly
