// What an Omaha hand is worth is what its best pair of hole cards is worth. So a hand wins against
// those whose pairs are all worth less: the cards that are left make a graph, joined where a pair
// is worth less, and the hands that lose are its cliques of as many cards. The hands that do
// not win are those of the graph joined where a pair is not worth more. It is the same for lows.
//
// Cards of one rank that cannot flush are one vertex, and boards that are alike are counted once.

#include "kernels/omaha_cliques.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "eval/omaha_best.h"
#include "eval/omaha_low.h"
#include "kernels/card_graph.h"
#include "kernels/omaha_boards.h"
#include "platform/isa.h"

namespace pokermath {
namespace {

// A hand against what its opponents may hold on one board.
class Contest {
 public:
  Contest(Isa isa, std::span<const int> hand, std::span<const int> ranks,
          const OmahaBoardClass& board, const LiveCards& live)
      : isa_(isa), hand_(hand), ranks_(ranks), live_(live) {
    const OmahaPairValues values(ranks, board.suit, board.suited);
    const int value = values.Best(hand);
    const PairTable pairs = live.PairsOf(values);
    less_ = live.NoMoreThan(pairs, value - 1);
    not_more_ = live.NoMoreThan(pairs, value);
  }

  void AddTo(Tally& tally, std::int64_t boards) const {
    const std::int64_t less = Count(less_);
    const std::int64_t not_more = less_ == not_more_ ? less : Count(not_more_);
    tally.wins += less * boards;
    tally.ties += (not_more - less) * boards;
    tally.cases += Choose(live_.cards(), static_cast<int>(hand_.size())) * boards;
  }

  void AddTo(HighLowTally& tally, std::int64_t boards) const {
    const OmahaPairLows lows(ranks_);
    const int low = lows.Best(hand_);
    const PairTable pairs = live_.PairsOf(lows);
    Tally all;
    AddTo(all, 1);
    tally.boards += all.cases * boards;
    if (low > 0) {
      // There is a low in any case.
      const CardGraph worse = live_.NoMoreThan(pairs, low - 1);
      const CardGraph not_better = live_.NoMoreThan(pairs, low);
      const std::int64_t wins = Count(worse);
      const std::int64_t wins_and_ties = Count(not_better);
      const std::int64_t some_of_both = Count(not_more_ & not_better);
      tally.low[0] += wins * boards;
      tally.low[1] += (wins_and_ties - wins) * boards;
      tally.high[0] += all.wins * boards;
      tally.high[1] += all.ties * boards;
      tally.lows += all.cases * boards;
      tally.scoops += Count(less_ & worse) * boards;
      tally.losses += (all.cases - (all.wins + all.ties) - wins_and_ties + some_of_both) * boards;
      return;
    }
    const CardGraph no_low = live_.NoMoreThan(pairs, 0);
    const std::int64_t wins = Count(less_ & no_low);
    const std::int64_t ties = Count(not_more_ & no_low) - wins;
    tally.whole[0] += wins * boards;
    tally.whole[1] += ties * boards;
    tally.high[0] += (all.wins - wins) * boards;
    tally.high[1] += (all.ties - ties) * boards;
    tally.lows += (all.cases - Count(no_low)) * boards;
    tally.scoops += wins * boards;
    tally.losses += (all.cases - all.wins - all.ties) * boards;
  }

 private:
  std::int64_t Count(const CardGraph& graph) const {
    return live_.CountHands(isa_, hand_.size(), graph);
  }

  Isa isa_;
  std::span<const int> hand_;
  std::span<const int> ranks_;
  const LiveCards& live_;
  CardGraph less_, not_more_;
};

// Adds up the contests on all boards; nothing if it was stopped.
template <typename Result>
Result CountAll(const OmahaAgainstAll& contests, const GoOn& go_on) {
  constexpr std::int64_t kBetweenCalls = 1024;
  Result result;
  for (std::int64_t first = 0; first < contests.classes(); first += kBetweenCalls) {
    if (go_on && !go_on(first, contests.classes())) return {};
    contests.Count(first, std::min(first + kBetweenCalls, contests.classes()), result);
  }
  return result;
}

}  // namespace

OmahaAgainstAll::OmahaAgainstAll(Isa isa, std::span<const int> hand, std::span<const int> board,
                                 Street street, std::span<const int> dead)
    : isa_(isa), hand_(hand), boards_(hand, board, street, dead), classes_(boards_.Classes()) {}

std::int64_t OmahaAgainstAll::classes() const { return static_cast<std::int64_t>(classes_.size()); }

template <typename Result>
void OmahaAgainstAll::Add(std::int64_t first, std::int64_t last, Result& result) const {
  for (std::int64_t i = first; i < last; ++i) {
    const OmahaBoardClass& board = classes_[static_cast<std::size_t>(i)];
    const LiveCards live = boards_.LiveOn(board);
    Contest(isa_, hand_, boards_.RanksOf(board), board, live).AddTo(result, board.boards);
  }
}

void OmahaAgainstAll::Count(std::int64_t first, std::int64_t last, Tally& tally) const {
  Add(first, last, tally);
}
void OmahaAgainstAll::Count(std::int64_t first, std::int64_t last, HighLowTally& tally) const {
  Add(first, last, tally);
}

Tally CountOmahaAgainstAll(Isa isa, std::span<const int> hand, std::span<const int> board,
                           Street street, std::span<const int> dead, const GoOn& go_on) {
  return CountAll<Tally>(OmahaAgainstAll(isa, hand, board, street, dead), go_on);
}

HighLowTally CountHighLowAgainstAll(Isa isa, std::span<const int> hand, std::span<const int> board,
                                    Street street, std::span<const int> dead, const GoOn& go_on) {
  return CountAll<HighLowTally>(OmahaAgainstAll(isa, hand, board, street, dead), go_on);
}

std::int64_t CountOmahaBetter(Isa isa, std::span<const int> hand, std::span<const int> board) {
  const auto street = static_cast<Street>(board.size());
  const OmahaBoards boards(hand, board, street, {});
  const OmahaBoardClass whole = boards.Whole();
  const LiveCards live = boards.LiveOn(whole);
  const OmahaPairValues values(board);
  return Choose(live.cards(), static_cast<int>(hand.size())) -
         live.CountHands(isa, hand.size(),
                         live.NoMoreThan(live.PairsOf(values), values.Best(hand)));
}

}  // namespace pokermath
