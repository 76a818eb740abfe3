#include "batch/FailingMemory.h"

#include <cstdlib>
#include <new>

namespace tessaly::tests {
namespace {

thread_local std::atomic<int> failing = 0;

void* allocate(std::size_t size) {
  if (failing > 0) {
    if (failing != allAllocations) --failing;
    throw std::bad_alloc();
  }
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

std::atomic<int>& allocationsThatFail() {
  return failing;
}

}  // namespace tessaly::tests

// NOLINTBEGIN(misc-new-delete-overloads): the aligned forms stay the library's.
void* operator new(std::size_t size) {
  return tessaly::tests::allocate(size);
}

void* operator new[](std::size_t size) {
  return tessaly::tests::allocate(size);
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete[](void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
// NOLINTEND(misc-new-delete-overloads)
