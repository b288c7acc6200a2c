// Memory that runs out when a test says so.

#ifndef POKERMATH_TESTS_SUPPORT_FAILING_MEMORY_H_
#define POKERMATH_TESTS_SUPPORT_FAILING_MEMORY_H_

namespace pokermath {

/// While it is not negative, this many more allocations of the thread succeed and one fails; then
/// it is negative, or stays 0 and all fail if memory is gone for good.
extern thread_local long allocations_left;
extern thread_local bool memory_gone_for_good;
extern thread_local bool allocation_failed;

}  // namespace pokermath

#endif  // POKERMATH_TESTS_SUPPORT_FAILING_MEMORY_H_
