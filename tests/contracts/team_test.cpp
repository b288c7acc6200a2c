// What is thrown within a team of threads reaches the caller.

#include "contracts/team.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <new>
#include <stdexcept>
#include <string>

#include "pokermath/equity.h"
#include "pokermath/poker_logic.h"
#include "pokermath/ranges.h"
#include "tests/support/failing_memory.h"

namespace pokermath {
namespace {

TEST(Team, AddsUpInOrderAndThrowsTheFirst) {
  const auto text = [](int i) { return std::to_string(i) + ","; };
  EXPECT_EQ(SumOfTeam(6, text), "0,1,2,3,4,5,");
  EXPECT_EQ(SumOfTeam(0, text), "");
  try {
    SumOfTeam(50, [](int i) {
      if (i % 20 == 11) throw std::runtime_error(std::to_string(i));
      return i;
    });
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "11");
  }
}

// Fails every allocation of the calling thread, which is one of the team, in its turn; returns how
// many there are.
template <typename Call>
int FailEveryAllocation(const Call& call) {
  const double right = call();
  int failures = 0;
  for (long allowed = 0;; ++allowed) {
    allocation_failed = false;
    allocations_left = allowed;
    bool thrown = false;
    double got = 0;
    try {
      got = call();
    } catch (const std::bad_alloc&) {
      thrown = true;
    }
    allocations_left = -1;
    EXPECT_EQ(thrown, allocation_failed);
    if (!allocation_failed) {
      EXPECT_EQ(got, right);
      break;
    }
    ++failures;
  }
  EXPECT_EQ(call(), right);
  return failures;
}

TEST(Team, NoMemoryIsAnException) {
  // In a larger team the calling thread has less to do.
  const int threads = omp_get_max_threads();
  omp_set_num_threads(2);
  int omaha[] = {8, 21, 34, 12};
  int turn[] = {0, 14, 28, 42};
  // Most of them within the team.
  EXPECT_GE(FailEveryAllocation([&] {
              int count = 0;
              return RiverEquityHandVsRandomOnTurnFsm5(omaha, turn, count);
            }),
            50);
  PokerLogic logic;
  logic.equityTable = {{{1, 2}, 3}};  // of nobody, so that every matchup is left to be counted
  const Spec spec = ParseRange("88+,AQs+").range;
  int hand[] = {51, 37};
  EXPECT_GE(
      FailEveryAllocation([&] { return logic.getProbabilityOfWinBySpectrWithNoBoard(hand, spec); }),
      20);
  // This one asks for memory only in front of the team.
  EXPECT_GE(
      FailEveryAllocation([&] { return getProbabilityOfWinBySpectrWithNoBoard6Plus(hand, spec); }),
      1);
  omp_set_num_threads(threads);
}

}  // namespace
}  // namespace pokermath
