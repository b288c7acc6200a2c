// Large memory pages for arrays that are not a LargeTable.

#ifndef POKERMATH_PLATFORM_LARGE_PAGES_H_
#define POKERMATH_PLATFORM_LARGE_PAGES_H_

#include <cstddef>

namespace pokermath {

/// Asks for large pages inside a piece of memory that has not been written to yet.
void AskForLargePages(void* memory, std::size_t bytes);

}  // namespace pokermath

#endif  // POKERMATH_PLATFORM_LARGE_PAGES_H_
