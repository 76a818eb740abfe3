#include "platform/HugePages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace tessaly {
namespace {

constexpr std::uintptr_t hugePageSize = std::uintptr_t{2} * 1024 * 1024;

}  // namespace

// The hint is for whole pages: those that the memory shares with its neighbours may become part of a huge page too,
// which does them no harm. The system answers with an error where huge pages are switched off; the memory is as good
// without.
void preferHugePages(std::span<std::byte> memory) {
  if (memory.size() < hugePageSize) return;
  const auto pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  const std::uintptr_t lead = reinterpret_cast<std::uintptr_t>(memory.data()) % pageSize;
  ::madvise(memory.data() - lead, memory.size() + lead, MADV_HUGEPAGE);
}

std::size_t wholeHugePages(std::size_t bytes) {
  if (bytes < hugePageSize) return bytes;
  return (bytes + hugePageSize - 1) / hugePageSize * hugePageSize;
}

}  // namespace tessaly
