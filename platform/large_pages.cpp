// Memory of the big tables. A table of 130 MB read at random spends most of its time on address
// translation unless it lies on large pages, so we align it to them and ask for them.

#include "platform/large_pages.h"

#if defined(__linux__)
#include <sys/mman.h>
#endif

#include <cstdint>
#include <cstdlib>
#include <new>

#include "pokermath/large_table.h"

namespace pokermath {
namespace {

// A wish: small pages work too, and where there are no others it has no effect.
void PreferLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) {
#if defined(__linux__)
  madvise(memory, bytes, MADV_HUGEPAGE);
#endif
}

[[noreturn]] void OutOfMemory() {
#if defined(__cpp_exceptions)
  throw std::bad_alloc();
#else
  std::abort();
#endif
}

}  // namespace

void* AllocateLargePages(std::size_t bytes) {
  constexpr std::size_t kLargePage = std::size_t{2} << 20;
  constexpr std::size_t kCacheLine = 64;
  const std::size_t unit = bytes < kLargePage ? kCacheLine : kLargePage;
  if (bytes > static_cast<std::size_t>(-1) - unit) OutOfMemory();
  const std::size_t rounded = (bytes + unit - 1) / unit * unit;
  void* memory = std::aligned_alloc(unit, rounded);
  if (memory == nullptr) OutOfMemory();
  if (unit == kLargePage) PreferLargePages(memory, rounded);
  return memory;
}

void AskForLargePages(void* memory, std::size_t bytes) {
  constexpr std::uintptr_t kLargePage = std::uintptr_t{2} << 20;
  const auto begin =
      (reinterpret_cast<std::uintptr_t>(memory) + kLargePage - 1) & ~(kLargePage - 1);
  const auto end = (reinterpret_cast<std::uintptr_t>(memory) + bytes) & ~(kLargePage - 1);
  if (begin < end) PreferLargePages(reinterpret_cast<void*>(begin), end - begin);
}

void FreeLargePages(void* memory) noexcept { std::free(memory); }

}  // namespace pokermath
