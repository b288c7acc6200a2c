// Known board cards leave few boards, 178,365 at most and 990 from a flop, so they are dealt one by
// one.

#include "equity/kernels/runouts.h"

#include <algorithm>
#include <vector>

#include "pokermath/evaluators.h"

namespace pokermath {
namespace {

template <int kBoard>
struct Showdown {
  int hand1[kBoard + 2];  // hole cards, then the board
  int hand2[kBoard + 2];
  std::vector<int> live;  // cards that may still come
  Tally tally;

  void SetBoardCard(int place, int card) {
    hand1[2 + place] = card;
    hand2[2 + place] = card;
  }

  // Deals the board cards from `place` on, out of the live cards from `first` on.
  void Deal(int place, std::size_t first) {
    if (place == kBoard) {
      const int value1 = EvaluateCards<kBoard + 2>(hand1);
      const int value2 = EvaluateCards<kBoard + 2>(hand2);
      tally.wins += value1 > value2 ? 1 : 0;
      tally.ties += value1 == value2 ? 1 : 0;
      ++tally.cases;
      return;
    }
    for (std::size_t i = first; i < live.size(); ++i) {
      SetBoardCard(place, live[i]);
      Deal(place + 1, i + 1);
    }
  }
};

template <int kBoard>
Tally Count(std::span<const int, 2> hand1, std::span<const int, 2> hand2,
            std::span<const int> board) {
  Showdown<kBoard> showdown;
  std::ranges::copy(hand1, showdown.hand1);
  std::ranges::copy(hand2, showdown.hand2);
  int known = 0;
  for (const int card : board) showdown.SetBoardCard(known++, card);
  const auto holds = [](const auto& cards, int card) {
    return std::ranges::find(cards, card) != cards.end();
  };
  for (int card = 0; card < 52; ++card) {
    if (!holds(hand1, card) && !holds(hand2, card) && !holds(board, card)) {
      showdown.live.push_back(card);
    }
  }
  showdown.Deal(known, 0);
  return showdown.tally;
}

}  // namespace

Tally CountRunouts(std::span<const int, 2> hand1, std::span<const int, 2> hand2,
                   std::span<const int> board, Street street) {
  switch (street) {
    case Street::kFlop:
      return Count<3>(hand1, hand2, board);
    case Street::kTurn:
      return Count<4>(hand1, hand2, board);
    default:
      return Count<5>(hand1, hand2, board);
  }
}

}  // namespace pokermath
