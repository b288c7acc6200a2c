// Memory of the big tables. A table of 130 MB read at random spends most of its time on address
// translation unless it lies on large pages, so we align it to them and ask for them.

#include "platform/large_pages.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>
#include <new>

#include "pokermath/large_table.h"

namespace pokermath {

void* AllocateLargePages(std::size_t bytes) {
  constexpr std::size_t kLargePage = std::size_t{2} << 20;
  constexpr std::size_t kCacheLine = 64;
  const std::size_t unit = bytes < kLargePage ? kCacheLine : kLargePage;
  if (bytes > static_cast<std::size_t>(-1) - unit) throw std::bad_alloc();
  const std::size_t rounded = (bytes + unit - 1) / unit * unit;
  void* memory = std::aligned_alloc(unit, rounded);
  if (memory == nullptr) throw std::bad_alloc();
  // A wish: small pages work too.
  if (unit == kLargePage) madvise(memory, rounded, MADV_HUGEPAGE);
  return memory;
}

void AskForLargePages(void* memory, std::size_t bytes) {
  constexpr std::uintptr_t kLargePage = std::uintptr_t{2} << 20;
  const auto begin =
      (reinterpret_cast<std::uintptr_t>(memory) + kLargePage - 1) & ~(kLargePage - 1);
  const auto end = (reinterpret_cast<std::uintptr_t>(memory) + bytes) & ~(kLargePage - 1);
  if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

void FreeLargePages(void* memory) noexcept { std::free(memory); }

}  // namespace pokermath
