#include "tests/support/failing_memory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace pokermath {

thread_local long allocations_left = -1;
thread_local bool memory_gone_for_good = false;
thread_local bool allocation_failed = false;

}  // namespace pokermath

void* operator new(std::size_t size) {
  using namespace pokermath;
  if (allocations_left == 0) {
    allocation_failed = true;
    if (!memory_gone_for_good) allocations_left = -1;
    throw std::bad_alloc();
  }
  if (allocations_left > 0) --allocations_left;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
