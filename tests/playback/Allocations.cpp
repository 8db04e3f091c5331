// Counts what each thread of this test program allocates.
#include "helpers/Allocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::uint64_t allocations = 0;

void* Counted(void* memory) {
  ++allocations;
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

}  // namespace

std::uint64_t Sonarello::AllocationsOfThread() noexcept { return allocations; }

void* operator new(std::size_t size) { return Counted(std::malloc(size > 0 ? size : 1)); }

void* operator new(std::size_t size, std::align_val_t alignment) {
  const auto step = static_cast<std::size_t>(alignment);
  return Counted(std::aligned_alloc(step, (size + step - 1) / step * step));
}

// The forms that do not throw too: under a sanitizer they would else be those of its own allocator,
// which must not meet our delete.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  ++allocations;
  return std::malloc(size > 0 ? size : 1);
}

void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  ++allocations;
  const auto step = static_cast<std::size_t>(alignment);
  return std::aligned_alloc(step, (size + step - 1) / step * step);
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
