#include "batch/FailingMemory.h"

#include <cstdlib>
#include <new>

namespace tessaly::tests {
namespace {

thread_local std::atomic<int> failing = 0;

void* allocateOrNull(std::size_t size) noexcept {
  if (failing > 0) {
    if (failing != allAllocations) --failing;
    return nullptr;
  }
  return std::malloc(size == 0 ? 1 : size);
}

void* allocate(std::size_t size) {
  if (void* const memory = allocateOrNull(size)) return memory;
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

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return tessaly::tests::allocateOrNull(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return tessaly::tests::allocateOrNull(size);
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

void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
// NOLINTEND(misc-new-delete-overloads)
