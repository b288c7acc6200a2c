// Holdings of the same ranks share what ranks decide, and those that a suit sees alike share what
// its flushes change. So a range is counted by class and by view, not by holding.

#include "kernels/range_count.h"

#include <algorithm>
#include <vector>

#include "kernels/board_judge.h"
#include "kernels/known_matchups.h"
#include "kernels/matchup.h"
#include "kernels/runouts.h"
#include "platform/isa.h"
#include "pokermath/evaluators.h"

namespace pokermath {

Tally CountHands(const ShowdownCounts& counts, const int* hand1, const int* hand2) {
  Tally tally{.cases = counts.Boards()};
  AddTimes(counts.CountRanks(RankClassOf(hand1[0] % 13, hand1[1] % 13),
                             RankClassOf(hand2[0] % 13, hand2[1] % 13)),
           1, tally);
  for (int suit = 0; suit < 4; ++suit) {
    const SuitView& view1 = ViewOf(hand1[0], hand1[1], suit);
    const SuitView& view2 = ViewOf(hand2[0], hand2[1], suit);
    if (std::max(view1.held_count, view2.held_count) >= counts.CardsToFlush(suit)) {
      AddTimes(counts.CorrectSuit(suit, view1, view2), 1, tally);
    }
  }
  return tally;
}

OpponentGroups::OpponentGroups(const ShowdownCounts& counts, std::span<const int, 2> hand)
    : counts_(counts), rank_class_(RankClassOf(hand[0] % 13, hand[1] % 13)) {
  for (std::size_t suit = 0; suit < 4; ++suit) {
    views_[suit] = ViewNumber(hand[0], hand[1], static_cast<int>(suit));
    const int like = counts.LikeSuit(static_cast<int>(suit));
    std::size_t& group = group_of_[suit];
    group = 0;
    while (views_[group] != views_[suit] || counts.LikeSuit(static_cast<int>(group)) != like) {
      ++group;
    }
    if (counts.CardsToFlush(static_cast<int>(suit)) > 2) group_of_[suit] = kNone;
    ++groups_[group_of_[suit]].suits;
  }
}

void OpponentGroups::Add(const Combination& opponent) {
  const int card1 = opponent.first;
  const int card2 = opponent.second;
  ++holdings_[static_cast<std::size_t>(RankClassOf(card1 % 13, card2 % 13))];
  const auto see = [&](int suit) {
    const auto view = static_cast<std::size_t>(ViewNumber(card1, card2, suit));
    ++groups_[group_of_[static_cast<std::size_t>(suit)]].opponents[view];
  };
  see(card1 / 13);
  if (card1 / 13 != card2 / 13) see(card2 / 13);
}

Tally OpponentGroups::Count(int rank_class) const {
  const int holdings = holdings_[static_cast<std::size_t>(rank_class)];
  Tally tally{.cases = std::int64_t{holdings} * counts_.Boards()};
  AddTimes(counts_.CountRanks(rank_class_, rank_class), holdings, tally);
  for (std::size_t suit = 0; suit < 4; ++suit) {
    const SuitGroup& group = groups_[suit];
    if (group.suits == 0) continue;
    const SuitView& view = kViews[static_cast<std::size_t>(views_[suit])];
    const int needed = counts_.CardsToFlush(static_cast<int>(suit));
    int unseen = group.suits * holdings;
    for (std::size_t bits = 4; bits-- > 0;) {
      const std::size_t number = static_cast<std::size_t>(rank_class) * 4 + bits;
      const int opponents = bits == 0 ? unseen : group.opponents[number];
      unseen -= opponents;
      const SuitView& other = kViews[number];
      if (opponents == 0 || std::max(view.held_count, other.held_count) < needed) continue;
      AddTimes(counts_.CorrectSuit(static_cast<int>(suit), view, other), opponents, tally);
    }
  }
  return tally;
}

Tally OpponentGroups::Count() const {
  Tally all;
  for (int rank_class = 0; rank_class < kRankClasses; ++rank_class) {
    if (Has(rank_class)) all += Count(rank_class);
  }
  return all;
}

namespace {

// Value of five to seven cards, larger is better.
using ValueOfCards = int (*)(const int* cards, int count);

// Visits what comes out when cards are added to a board until it has `cards` cards.
template <typename Visit>
void Deal(std::vector<int>& board, std::size_t cards, std::uint64_t taken, int first,
          const Visit& visit) {
  if (board.size() == cards) return visit();
  for (int card = first; card < 52; ++card) {
    if ((taken & Bit(card)) != 0) continue;
    board.push_back(card);
    Deal(board, cards, taken, card + 1, visit);
    board.pop_back();
  }
}

Tally CountGroups(const ShowdownCounts& counts, std::span<const int, 2> hand,
                  std::span<const Combination> opponents, std::uint64_t taken) {
  OpponentGroups groups(counts, hand);
  for (const Combination& opponent : opponents) {
    if ((Bits(opponent) & taken) == 0) groups.Add(opponent);
  }
  return groups.Count();
}

// Judges holdings on one complete board.
Tally JudgeBoard(std::span<const int, 2> hand, std::span<const Combination> opponents,
                 std::span<const int> board, std::uint64_t taken, ValueOfCards value_of) {
  const int count = 2 + static_cast<int>(board.size());
  const auto value = [&](int card1, int card2) {
    int cards[7] = {card1, card2};
    std::ranges::copy(board, cards + 2);
    return value_of(cards, count);
  };
  const int hero = value(hand[0], hand[1]);
  Tally tally;
  for (const auto& [first, second] : opponents) {
    if (((Bit(first) | Bit(second)) & taken) != 0) continue;
    const int other = value(first, second);
    tally.wins += hero > other ? 1 : 0;
    tally.ties += hero == other ? 1 : 0;
    ++tally.cases;
  }
  return tally;
}

// What the cards of the short deck among some make, whatever the others are.
int ValueWithoutAbsent(const int* cards, int count) {
  int present[7];
  const auto in_deck = [](int card) { return card % 13 >= kLowestShortDeckCard; };
  const auto end = std::copy_if(cards, cards + count, present, in_deck);
  return EvaluateShortDeck(present, static_cast<int>(end - present));
}

// Short-deck cards, valued in any way.
Tally CountBoardByBoard(std::span<const int, 2> hand, std::span<const Combination> opponents,
                        std::span<const int> board, Street street, ValueOfCards value) {
  const std::uint64_t taken = Bits(hand) | Bits(board) | AbsentCards(Deck::kShort);
  std::vector<int> complete(board.begin(), board.end());
  Tally tally;
  Deal(complete, static_cast<std::size_t>(street), taken, 0,
       [&] { tally += JudgeBoard(hand, opponents, complete, taken | Bits(complete), value); });
  return tally;
}

}  // namespace

Tally CountAgainst(Deck deck, std::span<const int, 2> hand, std::span<const Combination> opponents,
                   std::span<const int> board, Street street) {
  const auto cards = static_cast<std::size_t>(street);
  const std::uint64_t known = Bits(hand) | Bits(board);
  const std::uint64_t taken = known | AbsentCards(deck);
  // A short-deck hand or board with a card that is not in the deck is judged board by board: to the
  // river it is worth nothing, to the turn what its other cards make.
  const bool in_deck = (known & AbsentCards(deck)) == 0;
  if (deck == Deck::kShort && (!in_deck || board.size() == cards)) {
    const ValueOfCards evaluate = EvaluateShortDeck;
    const ValueOfCards value = street == Street::kTurn ? ValueWithoutAbsent : evaluate;
    return CountBoardByBoard(hand, opponents, board, street, value);
  }
  Tally tally;
  if (board.size() == cards) {
    BoardJudge(hand, opponents).Judge(board, 0, tally);
    return tally;
  }
  if (board.empty()) {
    if (street == Street::kRiver && IsHandOf(deck, hand)) {
      return KnownMatchups::Of(deck).CountAgainst(hand, opponents);
    }
    return CountGroups(EmptyBoardCounts(BestIsa(), deck, street), hand, opponents, taken);
  }
  if (board.size() >= 3) {
    return CountGroups(Runouts(BestIsa(), deck, board, static_cast<int>(street)), hand, opponents,
                       taken);
  }
  // Every board comes about as often as three of its cards can be dealt first.
  std::vector<int> flop(board.begin(), board.end());
  Deal(flop, 3, taken, 0, [&] { tally += CountAgainst(deck, hand, opponents, flop, street); });
  const int times =
      Choose(static_cast<int>(cards - board.size()), static_cast<int>(3 - board.size()));
  tally.wins /= times;
  tally.ties /= times;
  tally.cases /= times;
  return tally;
}

}  // namespace pokermath
