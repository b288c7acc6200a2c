// The container of the big tables.

#ifndef POKERMATH_LARGE_TABLE_H_
#define POKERMATH_LARGE_TABLE_H_

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "pokermath/export.h"

namespace pokermath {

POKERMATH_EXPORT void* AllocateLargePages(std::size_t bytes);
POKERMATH_EXPORT void FreeLargePages(void* memory) noexcept;

/// Allocator of tables: aligned to cache lines, from 2 MB on in large memory pages where the system
/// has them; new elements are not zeroed, as they are about to be overwritten.
template <typename T>
struct LargePageAllocator {
  using value_type = T;

  LargePageAllocator() = default;
  template <typename U>
  LargePageAllocator(const LargePageAllocator<U>&) {}  // NOLINT(google-explicit-constructor)

  T* allocate(std::size_t count) { return static_cast<T*>(AllocateLargePages(count * sizeof(T))); }
  void deallocate(T* memory, std::size_t) noexcept { FreeLargePages(memory); }
  template <typename U>
  void construct(U* place) noexcept {
    ::new (static_cast<void*>(place)) U;
  }
  template <typename U, typename... Arguments>
  void construct(U* place, Arguments&&... arguments) {
    ::new (static_cast<void*>(place)) U(std::forward<Arguments>(arguments)...);
  }
  template <typename U>
  bool operator==(const LargePageAllocator<U>&) const {
    return true;
  }
};

template <typename T>
using LargeTable = std::vector<T, LargePageAllocator<T>>;

}  // namespace pokermath

#endif  // POKERMATH_LARGE_TABLE_H_
