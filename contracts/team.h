// A loop on a team of threads, for the three calculations that have one.

#ifndef POKERMATH_CONTRACTS_TEAM_H_
#define POKERMATH_CONTRACTS_TEAM_H_

#include <omp.h>

#include <cstddef>
#include <exception>
#include <vector>

namespace pokermath {

/// The sum of `act(0)` .. `act(count - 1)`, added up in this order by the caller. What one of them
/// throws, the caller gets when all have ended: an exception that left the team would end the
/// process.
template <typename Act>
auto SumOfTeam(int count, const Act& act) {
  using Part = decltype(act(0));
  struct Slot {
    Part part{};
    std::exception_ptr thrown;
  };
  std::vector<Slot> slots(static_cast<std::size_t>(count));
  omp_set_dynamic(1);
  // Every index writes its own slot only.
#pragma omp parallel for schedule(static)
  for (int i = 0; i < count; ++i) {
    Slot& slot = slots[static_cast<std::size_t>(i)];
    try {
      slot.part = act(i);
    } catch (...) {
      slot.thrown = std::current_exception();
    }
  }
  Part sum{};
  for (const Slot& slot : slots) {
    if (slot.thrown) std::rethrow_exception(slot.thrown);
    sum += slot.part;
  }
  return sum;
}

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_TEAM_H_
