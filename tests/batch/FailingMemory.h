// Memory that runs out when a test says so: every allocation with new in this program asks here first.
#pragma once

#include <atomic>
#include <limits>

namespace tessaly::tests {

inline constexpr int allAllocations = std::numeric_limits<int>::max();

/// How many of the calling thread's next allocations fail. Another thread may set it while this one waits.
[[nodiscard]] std::atomic<int>& allocationsThatFail();

}  // namespace tessaly::tests
