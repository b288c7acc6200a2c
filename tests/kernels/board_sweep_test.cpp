#include "kernels/board_sweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "eval/worth.h"

namespace pokermath {
namespace {

class Deals {
 public:
  Deals(Game game, std::uint32_t seed) : rules_(RulesOf(game)), random_(seed) {}

  std::size_t Below(std::size_t limit) { return random_() % limit; }

  // A board that is of any cards, mostly of one suit, or mostly of two ranks.
  CardSet Board(int size) {
    const CardSet deck = rules_.Deck();
    std::vector<int> cards(deck.begin(), deck.end());
    std::shuffle(cards.begin(), cards.end(), random_);
    const std::size_t kind = Below(3);
    const auto is_near = [&](int card) {
      return kind == 1 ? card / 13 == cards[0] / 13
                       : kind == 2 && (card % 13 == cards[0] % 13 || card % 13 == cards[1] % 13);
    };
    std::vector<int> near = cards;
    std::stable_partition(near.begin(), near.end(), is_near);
    if (Below(2) == 0) near[static_cast<std::size_t>(size) - 1] = cards.back();
    CardSet board;
    for (int i = 0; i < size; ++i) board.Add(near[static_cast<std::size_t>(i)]);
    return board;
  }

  // About one hand in `one_in`.
  std::vector<WeightedPair> Range(std::size_t one_in) {
    std::vector<WeightedPair> hands;
    const CardSet deck = rules_.Deck();
    for (const int low : deck) {
      for (const int high : deck) {
        if (low >= high || Below(one_in) != 0) continue;
        hands.push_back({low, high, 1 + static_cast<int>(Below(10000))});
      }
    }
    return hands;
  }

 private:
  const GameRules& rules_;
  std::mt19937 random_;
};

// Adds one complete board, hand by hand.
void CountPlainly(const GameRules& rules, const TwoRanges& ranges, CardSet board,
                  const TwoTallies& tallies) {
  const std::vector<int> board_cards(board.begin(), board.end());
  struct Played {
    std::uint64_t cards;
    int value, weight;
    Tally* tally;
  };
  const auto played = [&](std::span<const WeightedPair> hands, std::span<Tally> of) {
    std::vector<Played> values;
    for (std::size_t i = 0; i < hands.size(); ++i) {
      const int cards[] = {hands[i].card1, hands[i].card2};
      if (CardSet(cards).Meets(board)) continue;
      const int value = WorthOf(rules, cards, board_cards).high;
      values.push_back({CardSet(cards).bits(), value, hands[i].weight, &of[i]});
    }
    return values;
  };
  const std::vector<Played> all2 = played(ranges.hands2, tallies.of2);
  for (const Played& hand1 : played(ranges.hands1, tallies.of1)) {
    Tally tally;
    for (const Played& hand2 : all2) {
      if ((hand1.cards & hand2.cards) != 0) continue;
      const bool wins = hand1.value > hand2.value, ties = hand1.value == hand2.value;
      tally += {wins ? hand2.weight : 0, ties ? hand2.weight : 0, hand2.weight};
      *hand2.tally += {wins || ties ? 0 : hand1.weight, ties ? hand1.weight : 0, hand1.weight};
    }
    *hand1.tally += tally;
  }
}

struct Tallies {
  explicit Tallies(const TwoRanges& ranges)
      : of1(ranges.hands1.size()), of2(ranges.hands2.size()) {}
  TwoTallies all() { return {of1, of2}; }
  bool operator==(const Tallies&) const = default;

  std::vector<Tally> of1, of2;
};

// All boards of some known cards, others that come, and of `to_come` more below `highest`.
void CountPlainly(const GameRules& rules, const TwoRanges& ranges, CardSet board, CardSet from,
                  int to_come, Tallies& tallies, int highest = 52) {
  if (to_come == 0) return CountPlainly(rules, ranges, board, tallies.all());
  for (const int card : from) {
    if (card >= highest) break;
    CountPlainly(rules, ranges, board | CardSet{card}, from, to_come - 1, tallies, card);
  }
}

// What two sweeps by category say of all of them together.
template <typename Count>
Tallies AllCategories(Isa isa, const GameRules& rules, const TwoRanges& ranges, CardSet board,
                      const Count& count) {
  BoardSweep made(isa, rules, ranges, board, SweepOf::kByCategory);
  BoardSweep cases(isa, rules, ranges, board, SweepOf::kCasesByCategory);
  count(made);
  count(cases);
  Tallies sum(ranges), all(ranges);
  for (int category = 0; category < kCategories; ++category) {
    made.AddTo(0, sum.all(), category);
    cases.AddTo(0, all.all(), category);
  }
  for (std::size_t i = 0; i < sum.of1.size(); ++i) sum.of1[i].cases = all.of1[i].ties;
  for (std::size_t i = 0; i < sum.of2.size(); ++i) sum.of2[i].cases = all.of2[i].ties;
  return sum;
}

TEST(BoardSweep, GivesEveryHandWhatPlainLoopsGive) {
  for (const Game game : {Game::kHoldem, Game::kShortDeck, Game::kShortDeckStraights}) {
    const GameRules& rules = RulesOf(game);
    Deals deals(game, 7);
    for (std::size_t i = 0; i < 30; ++i) {
      SCOPED_TRACE(std::string(rules.name) + " " + std::to_string(i));
      // A board of which some cards are to come, one of them perhaps for certain; and dead cards.
      CardSet board = deals.Board(3 + static_cast<int>(i % 3));
      const int to_come = static_cast<int>(deals.Below(3));
      for (int n = 0; n < to_come; ++n) board -= CardSet{*board.begin()};
      CardSet coming;
      if (deals.Below(2) == 0) coming.Add(*board.begin());
      CardSet from = rules.Deck() - board;
      if (deals.Below(2) == 0) from -= deals.Board(3);
      const std::size_t one_in = to_come == 2 ? 60 : (to_come == 1 ? 4 : 1) + deals.Below(8);
      const std::vector<WeightedPair> hands1 = deals.Range(one_in);
      const std::vector<WeightedPair> hands2 = deals.Range(one_in);
      const TwoRanges ranges{hands1, hands2};
      Tallies plain(ranges);
      CountPlainly(rules, ranges, board, from, to_come, plain);
      const Tallies with_cases = plain;
      for (auto* tallies : {&plain.of1, &plain.of2}) {
        for (Tally& tally : *tallies) tally.cases = 0;
      }
      for (const Isa isa : IsasOfMachine()) {
        BoardSweep sweep(isa, rules, ranges, board - coming);
        const auto count = [&](BoardSweep& to) { to.Count(coming, from, to_come); };
        count(sweep);
        Tallies swept(ranges);
        sweep.AddTo(0, swept.all());
        ASSERT_EQ(swept, plain) << IsaName(isa);
        BoardSweep of_first(isa, rules, ranges, board - coming, SweepOf::kFirstByHand);
        count(of_first);
        Tallies first(ranges);
        of_first.AddTo(0, {first.of1, {}});
        ASSERT_EQ(first.of1, plain.of1) << IsaName(isa);
        ASSERT_EQ(AllCategories(isa, rules, ranges, board - coming, count), with_cases);
      }
    }
  }
}

// Sums of 32 bits go to larger ones before they are full.
TEST(BoardSweep, AddsUpManyBoardsOfHeavyHands) {
  const GameRules& rules = RulesOf(Game::kHoldem);
  std::vector<WeightedPair> hands = Deals(Game::kHoldem, 8).Range(1);
  for (WeightedPair& hand : hands) hand.weight = 10000;
  const TwoRanges ranges{hands, hands};
  for (const CardSet board : {CardSet{0, 2, 17, 20, 35}, CardSet{0, 2, 4, 20, 35}}) {
    constexpr int kTimes = 1000;
    Tallies plain(ranges);
    CountPlainly(rules, ranges, board, plain.all());
    for (auto* tallies : {&plain.of1, &plain.of2}) {
      for (Tally& tally : *tallies) {
        tally = {kTimes * tally.wins, kTimes * tally.ties, kTimes * tally.cases};
      }
    }
    for (const Isa isa : IsasOfMachine()) {
      BoardSweep sweep(isa, rules, ranges, board);
      const auto count = [&](BoardSweep& to) {
        for (int i = 0; i < kTimes; ++i) to.Count({}, {}, 0);
      };
      count(sweep);
      Tallies swept(ranges);
      sweep.AddTo(kTimes, swept.all());
      ASSERT_EQ(swept, plain) << IsaName(isa);
      ASSERT_EQ(AllCategories(isa, rules, ranges, board, count), plain);
    }
  }
}

}  // namespace
}  // namespace pokermath
