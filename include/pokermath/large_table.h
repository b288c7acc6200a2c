/// @file
/// The container of the big tables.

#ifndef POKERMATH_LARGE_TABLE_H_
#define POKERMATH_LARGE_TABLE_H_

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "pokermath/export.h"

namespace pokermath {

/// Memory for a table of so many bytes, not zeroed: aligned to 64 bytes, from 2 MB on to 2 MB and
/// on large pages where the system has them. Throws std::bad_alloc when there is none. Any number
/// of threads.
POKERMATH_EXPORT void* AllocateLargePages(std::size_t bytes);
/// Gives such memory back; null is nothing.
POKERMATH_EXPORT void FreeLargePages(void* memory) noexcept;

/// Allocator of tables: aligned to cache lines, from 2 MB on in large memory pages where the system
/// has them; new elements are not zeroed, as they are about to be overwritten.
template <typename T>
struct LargePageAllocator {
  /// What the table holds.
  using value_type = T;

  /// Allocators have no state.
  LargePageAllocator() = default;
  /// Of another type.
  template <typename U>
  LargePageAllocator(const LargePageAllocator<U>&) {}  // NOLINT(google-explicit-constructor)

  /// Memory for so many elements; throws std::bad_alloc when there is none.
  T* allocate(std::size_t count) { return static_cast<T*>(AllocateLargePages(count * sizeof(T))); }
  /// Gives it back.
  void deallocate(T* memory, std::size_t) noexcept { FreeLargePages(memory); }
  /// Leaves a new element as its default constructor does: numbers are not set.
  template <typename U>
  void construct(U* place) noexcept {
    ::new (static_cast<void*>(place)) U;
  }
  /// Makes an element of the arguments.
  template <typename U, typename... Arguments>
  void construct(U* place, Arguments&&... arguments) {
    ::new (static_cast<void*>(place)) U(std::forward<Arguments>(arguments)...);
  }
  /// Whether memory of one can be freed by the other: always.
  template <typename U>
  bool operator==(const LargePageAllocator<U>&) const {
    return true;
  }
};

/// A vector of this memory.
template <typename T>
using LargeTable = std::vector<T, LargePageAllocator<T>>;

}  // namespace pokermath

#endif  // POKERMATH_LARGE_TABLE_H_
