#include "platform/HugePages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <memory>

namespace tessaly {
namespace {

constexpr std::size_t hugePageSize = 2 * 1024 * 1024;

}  // namespace

// The system takes whole pages only, so those that the memory shares with its neighbours are left out. It answers with
// an error where huge pages are switched off; the memory is as good without.
void preferHugePages(std::span<std::byte> memory) {
  const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  if (memory.size() < hugePageSize) return;
  void* start = memory.data();
  std::size_t length = memory.size();
  if (std::align(pageSize, pageSize, start, length) == nullptr) return;
  ::madvise(start, length - length % pageSize, MADV_HUGEPAGE);
}

}  // namespace tessaly
