// Large buffers in large pages.
#pragma once

#include <cstddef>
#include <span>

namespace tessaly {

/// Asks the system to back this memory with huge pages where it can. A hint for buffers of megabytes that have not been
/// touched yet: 48 MB in pages of 4 KB take 12,000 page faults, and those cost more than decoding a file into them.
void preferHugePages(std::span<std::byte> memory);

/// The next larger size that fills the last huge page, because the end of any other buffer stays in small pages; what
/// is smaller than one huge page keeps its size.
[[nodiscard]] std::size_t wholeHugePages(std::size_t bytes);

}  // namespace tessaly
