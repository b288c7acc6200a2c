// A process that answers for days keeps its size.

#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "jobs/question_line.h"
#include "pokermath/cards.h"
#include "pokermath/game.h"

namespace pokermath {
namespace {

// Pages of memory that the process holds, in KiB, without those that were freed: the allocator
// keeps some, fewer or more by the order of what was asked.
long ResidentKiB() {
  malloc_trim(0);
  long size = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// Questions of all games on all streets and to two, ranges, details and dead cards among them;
// every fiftieth is refused.
class MixedQuestions {
 public:
  std::string Next() {
    deck_.resize(52);
    std::iota(deck_.begin(), deck_.end(), 0);
    std::shuffle(deck_.begin(), deck_.end(), random_);
    next_ = 0;
    // Hold'em more often than the others, as it is asked.
    const int any = Below(static_cast<int>(kGames.size()));
    const GameRules& game = kGames[Below(4) > 0 ? 0 : static_cast<std::size_t>(any)];
    std::erase_if(deck_, [&](int card) { return card % 13 < game.lowest_rank; });
    const bool omaha = game.hand_size > 2;
    const std::string board = Cards(omaha || Below(4) > 0 ? 3 + Below(3) : 0);
    std::string line = R"({"id":)" + std::to_string(Below(1000000)) + R"(,"board":")" + board +
                       R"(","game":")" + game.name + R"(","players":[")";
    if (Below(10) == 0) line = R"({"dead":")" + Cards(1) + R"(",)" + line.substr(1);
    line += Cards(game.hand_size) + R"(",")";
    switch (Below(50)) {
      case 0:
        return line + Cards(3) + R"("]})";
      case 1:
        return line + (omaha ? Cards(game.hand_size) : Percent()) +
               R"("],"method":"sampled","trials":20,"detail":["made"]})";
      case 2:
      case 3:
        if (!omaha && board.size() >= 8) return line + Percent() + R"("],"detail":["hand"]})";
        [[fallthrough]];
      case 4:
        if (board.size() == 6) return line + Cards(game.hand_size) + R"("],"detail":["next"]})";
        [[fallthrough]];
      case 5:
        return line + Cards(game.hand_size) + R"(",")" + Cards(game.hand_size) + R"("]})";
      case 6:
        if (board.size() < 8) return line + Cards(game.hand_size) + R"("],"to":"turn"})";
        [[fallthrough]];
      default:
        return line + Cards(game.hand_size) + R"("]})";
    }
  }

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  // Never the same for long, so that whatever is kept of ranges has to go.
  std::string Percent() { return std::to_string(1 + Below(3000) * 0.01) + "%"; }
  std::string Cards(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += CardName(deck_[next_++]);
    return text;
  }

  std::mt19937 random_{1};
  std::vector<int> deck_;
  std::size_t next_ = 0;
};

TEST(MemorySlow, StaysFlatOverAMillionQuestions) {
  constexpr int kQuestions = 1000000;
  const EquityWords no_defaults;
  const LineOptions options{.defaults = no_defaults, .timed = false};
  MixedQuestions questions;
  int refused = 0;
  long early = 0;
  for (int i = 0; i < kQuestions; ++i) {
    if (i == kQuestions / 10) early = ResidentKiB();
    try {
      AnswerObject(questions.Next(), options);
    } catch (const LineError&) {
      ++refused;
    }
  }
  const long late = ResidentKiB();
  RecordProperty("early_kib", static_cast<int>(early));
  RecordProperty("late_kib", static_cast<int>(late));
  EXPECT_GT(refused, kQuestions / 100);
  EXPECT_LT(refused, kQuestions / 20) << "most should be answered";
  EXPECT_LT(late - early, 4096) << "KiB more, after " << early;
}

}  // namespace
}  // namespace pokermath
