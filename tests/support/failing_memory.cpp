#include "tests/support/failing_memory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace pokermath {

thread_local long allocations_left = -1;

}  // namespace pokermath

void* operator new(std::size_t size) {
  if (pokermath::allocations_left >= 0 && pokermath::allocations_left-- == 0) {
    throw std::bad_alloc();
  }
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
