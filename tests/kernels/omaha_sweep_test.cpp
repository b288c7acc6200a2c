// Two weighted Omaha ranges on a board: every hand against plain loops, and large ranges against
// the count of one hand.

#include "kernels/omaha_sweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <map>
#include <random>

#include "eval/omaha_low.h"
#include "eval/worth.h"
#include "kernels/omaha_class_runouts.h"
#include "kernels/omaha_range.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

CardSet Cards(std::string_view text) { return CardSet(ParseCards(text).cards); }
std::vector<int> ListOf(CardSet cards) { return {cards.begin(), cards.end()}; }

// Different hands of some cards, which share many of them, and hands of another range among them.
std::vector<WeightedHand> RandomHands(std::mt19937& random, CardSet of, std::size_t hand_size,
                                      std::size_t count,
                                      std::span<const WeightedHand> shared = {}) {
  std::vector<int> deck = ListOf(of);
  std::map<CardSet, int> hands;
  const auto weight = [&] { return 1 + static_cast<int>(random() % 10000); };
  for (const WeightedHand& hand : shared) hands[hand.cards] = weight();
  while (hands.size() < count) {
    std::ranges::shuffle(deck, random);
    hands[CardSet(std::span(deck).first(hand_size))] = weight();
  }
  std::vector<WeightedHand> list;
  for (const auto& [cards, of_hand] : hands) list.push_back({cards, of_hand});
  return list;
}

// By contest.
using AllCounts = std::array<OmahaCounts, kOmahaContests>;

void Compare(const Worth& own, const Worth& other, bool low_board, std::uint64_t weight,
             AllCounts& counts) {
  const auto add = [&](OmahaContest contest, bool below, bool not_above) {
    OmahaCounts& of = counts[static_cast<std::size_t>(contest)];
    of.below += below ? weight : 0;
    of.not_above += not_above ? weight : 0;
  };
  const bool above = own.high > other.high, not_below = own.high >= other.high;
  if (!low_board) return add(OmahaContest::kWholePot, above, not_below);
  add(OmahaContest::kHigh, above, not_below);
  if (own.low > 0) {
    add(OmahaContest::kLow, own.low > other.low, own.low >= other.low);
    add(OmahaContest::kHighAndLow, above && own.low > other.low, not_below && own.low >= other.low);
  } else if (other.low == 0) {
    add(OmahaContest::kNoLow, above, not_below);
  }
}

// What `hands` win and tie on a board, added to counts.
void CountPlainly(Game game, std::span<const WeightedHand> hands,
                  std::span<const WeightedHand> others, CardSet board,
                  std::vector<AllCounts>& counts) {
  const GameRules& rules = RulesOf(game);
  const std::vector<int> board_cards = ListOf(board);
  unsigned low_ranks = 0;
  for (const int card : board) low_ranks |= LowBit(card % 13);
  const bool low_board = rules.high_low && std::popcount(low_ranks) >= 3;
  const auto worth = [&](CardSet hand) {
    return hand.Meets(board) ? Worth{} : WorthOf(rules, ListOf(hand), board_cards);
  };
  std::vector<Worth> worths;
  for (const WeightedHand& other : others) worths.push_back(worth(other.cards));
  counts.resize(hands.size());
  for (std::size_t i = 0; i < hands.size(); ++i) {
    const Worth own = worth(hands[i].cards);
    for (std::size_t j = 0; j < others.size() && own.high > 0; ++j) {
      if (worths[j].high == 0 || others[j].cards.Meets(hands[i].cards)) continue;
      Compare(own, worths[j], low_board, static_cast<std::uint64_t>(others[j].weight), counts[i]);
    }
  }
}

// Whether a sweep has counted what plain loops have.
template <std::size_t hand_size>
void ExpectCounts(OmahaSweep<hand_size>& sweep, Game game, std::size_t side,
                  const std::vector<AllCounts>& expected) {
  for (std::size_t i = 0; i < (RulesOf(game).high_low ? kOmahaContests : 1); ++i) {
    SCOPED_TRACE(i);
    const std::vector<OmahaCounts> counts = sweep.CountsOf(side, static_cast<OmahaContest>(i));
    for (std::size_t hand = 0; hand < counts.size(); ++hand) {
      ASSERT_EQ(counts[hand], expected[hand][i]) << hand;
    }
  }
}

constexpr OmahaContest kWhole = OmahaContest::kWholePot;

constexpr const char* kBoards[] = {
    "2c7dThJs3d", "2c2d7h7sTd", "7c7d7h7s2d",                // no flush
    "2c7cTcJs3d", "2c7cTcJc3d", "2c7cTcJcAc", "AcKc2c9d9h",  // flushes
    "7c7d7hTcJc", "7c7dTdThJd",                              // and full houses
    "4c6c8c9c2d", "5c6c7c8c9c", "Ac2c3cTcKc", "TcJcQcTdTh", "4c6c8c9c4d",
    "9c8c7c7d7h", "2c3d7h8s8d", "Ac4c7cTs2d", "3c5c6c7d7s",  // with lows
    "2c7dTh",     "7c8c9c",     "7c7dTh",     "9c8c7cTc",   "9d9h8d7d"};

template <std::size_t hand_size>
void ExpectHandByHandOnBoardsOfAllKinds(std::initializer_list<Game> games) {
  std::mt19937 random(5);
  // Cards among which straight flushes are frequent, and all.
  const CardSet near = Cards("Ac2c3c4c5c6c7c8c9cTcJcQcKc7d7h9d9h8dTdTh");
  for (const CardSet of : {near, RulesOf(Game::kOmaha).Deck()}) {
    std::vector<WeightedHand> hands[2] = {RandomHands(random, of, hand_size, 200)};
    hands[1] = RandomHands(random, of, hand_size, 300, std::span(hands[0]).first(50));
    const OmahaTensors<hand_size> ranges(hands[0], hands[1]);
    for (const Game game : games) {
      const bool high_low = RulesOf(game).high_low;
      OmahaSweep<hand_size> all[] = {{Isa::kBaseline, ranges, high_low},
                                     {BestIsa(), ranges, high_low}};
      std::vector<AllCounts> expected_of_all[2];
      for (const char* const text : kBoards) {
        SCOPED_TRACE(text);
        OmahaSweep<hand_size> sweep(BestIsa(), ranges, high_low);
        sweep.Count(Cards(text));
        for (OmahaSweep<hand_size>& of_all : all) of_all.Count(Cards(text));
        for (const std::size_t side : {0u, 1u}) {
          std::vector<AllCounts> expected;
          CountPlainly(game, hands[side], hands[1 - side], Cards(text), expected);
          ExpectCounts(sweep, game, side, expected);
          CountPlainly(game, hands[side], hands[1 - side], Cards(text), expected_of_all[side]);
        }
      }
      for (OmahaSweep<hand_size>& of_all : all) {
        for (const std::size_t side : {0u, 1u}) {
          ExpectCounts(of_all, game, side, expected_of_all[side]);
        }
      }
    }
  }
}

TEST(OmahaSweep, EqualsHandByHandOnBoardsOfAllKinds) {
  ExpectHandByHandOnBoardsOfAllKinds<4>({Game::kOmaha, Game::kOmahaHighLow});
}
TEST(OmahaSweep, EqualsFiveCardsHandByHandOnBoardsOfAllKinds) {
  ExpectHandByHandOnBoardsOfAllKinds<5>({Game::kOmaha5, Game::kOmaha5HighLow});
}

template <std::size_t hand_size>
void ExpectAllThatShareNoCard() {
  std::mt19937 random(6);
  const CardSet deck = RulesOf(Game::kOmaha).Deck();
  const auto hands = RandomHands(random, deck, hand_size, 200);
  const auto others = RandomHands(random, deck, hand_size, 300);
  const OmahaTensors<hand_size> ranges(hands, others);
  OmahaSweep<hand_size> sweep(BestIsa(), ranges, false);
  sweep.CountAll();
  const std::vector<OmahaCounts> counts = sweep.CountsOf(0, kWhole);
  for (std::size_t i = 0; i < counts.size(); ++i) {
    std::uint64_t fit = 0;
    for (const WeightedHand& other : others) {
      if (!other.cards.Meets(hands[i].cards)) fit += static_cast<unsigned>(other.weight);
    }
    ASSERT_EQ(counts[i], (OmahaCounts{0, fit}));
  }
}

TEST(OmahaSweep, CountsAllThatShareNoCard) {
  ExpectAllThatShareNoCard<4>();
  ExpectAllThatShareNoCard<5>();
}

// Weights so large that 32 bits have no room for all rivers of a turn.
template <std::size_t hand_size>
void ExpectHandsAgainstALargeRangeOnATurn(Game game, const char* text) {
  const Result<RangeReading> reading = ReadRange(game, text);
  const HandRange& range = reading->range;
  const CardSet turn = Cards("8c9cTc8d");
  std::vector<WeightedHand> hands;
  for (const WeightedHand& hand : range.hands()) {
    if (!hand.cards.Meets(turn))
      hands.push_back({hand.cards, hands.size() % 3 == 0 ? 9999 : 10000});
  }
  const OmahaTensors<hand_size> ranges(hands, hands);
  OmahaSweep<hand_size> sweep(BestIsa(), ranges, false);
  for (const int river : RulesOf(game).Deck() - turn) sweep.Count(turn | CardSet{river});
  const std::vector<OmahaCounts> counts = sweep.CountsOf(0, kWhole);
  EXPECT_EQ(sweep.CountsOf(1, kWhole), counts);
  std::vector<std::array<int, hand_size>> others;
  std::vector<int> weights;
  for (const WeightedHand& other : hands) {
    std::ranges::copy(other.cards, others.emplace_back().begin());
    weights.push_back(other.weight);
  }
  for (std::size_t i = 7; i < hands.size(); i += hands.size() / 12) {
    const OmahaRangeContest<hand_size> contest(ListOf(hands[i].cards), others, ListOf(turn),
                                               Street::kRiver, {}, weights);
    const Tally tally = contest.Count(BestIsa());
    const auto wins = static_cast<std::uint64_t>(tally.wins);
    const auto ties = static_cast<std::uint64_t>(tally.ties);
    ASSERT_EQ(counts[i], (OmahaCounts{wins, wins + ties}));
  }
}

TEST(OmahaSweep, EqualsHandsAgainstALargeRangeOnATurn) {
  ExpectHandsAgainstALargeRangeOnATurn<4>(Game::kOmaha, "10%");
  ExpectHandsAgainstALargeRangeOnATurn<5>(Game::kOmaha5, "1%");
}

// All run-outs as if there were no flushes, and what these change, are what all boards give.
TEST(OmahaClassRunouts, EqualSweptBoardsButForFlushes) {
  std::mt19937 random(7);
  const struct {
    const char* board;
    const char* dead;
  } kCases[] = {{"2c7dTh", "3c3d3h3s5c5d5h5s6c6d6h6s8d8h8s9c9dTs"},
                {"7c7dTh", "2c2d2h2s3c3d3h3s4c4d4h4s9h9sTsJcJd"},
                {"Ac4cKc", "2d3d6c6d6h6s7d7h7s9d9h9sTdThTsJdQd"},
                {"3d3h", "4s5s6s7s8s"},
                {"2c7dThJs", "JdJh"},
                {"5c5dThTs", ""},
                {"Ad8c", "QdQh"}};
  for (const auto& [board_text, dead_text] : kCases) {
    SCOPED_TRACE(board_text);
    const CardSet board = Cards(board_text);
    const CardSet live = RulesOf(Game::kOmaha).Deck() - board - Cards(dead_text);
    const int to_come = board.size() == 3 ? 2 : 1;
    const auto hands = RandomHands(random, live, 4, 100);
    const auto others = RandomHands(random, live, 4, 60, std::span(hands).first(20));
    const OmahaTensors<4> ranges(hands, others);
    for (const bool high_low : {false, true}) {
      OmahaSweep<4> all(BestIsa(), ranges, high_low);
      OmahaSweep<4> with(BestIsa(), ranges, high_low, OmahaSweepPart::kButLow);
      OmahaSweep<4> without(BestIsa(), ranges, high_low, OmahaSweepPart::kButLowWithoutFlushes);
      for (const int card1 : live) {
        for (const int card2 : live) {
          if (to_come == 1 ? card1 != card2 : card1 <= card2) continue;
          const CardSet complete = board | CardSet{card1} | CardSet{card2};
          for (OmahaSweep<4>* sweep : {&all, &with, &without}) sweep->Count(complete);
        }
      }
      for (const Isa isa : {Isa::kBaseline, BestIsa()}) {
        const OmahaClassRunouts runouts(isa, ranges, board, live, to_come, high_low);
        for (const std::size_t side : {0u, 1u}) {
          for (std::size_t i = 0; i < (high_low ? kOmahaContests : 1); ++i) {
            SCOPED_TRACE(i);
            const auto contest = static_cast<OmahaContest>(i);
            const auto expected = all.CountsOf(side, contest), added = with.CountsOf(side, contest),
                       taken = without.CountsOf(side, contest);
            const auto counts = runouts.CountsOf(side, contest);
            for (std::size_t hand = 0; hand < counts.size(); ++hand) {
              const OmahaCounts sum = {
                  counts[hand].below + added[hand].below - taken[hand].below,
                  counts[hand].not_above + added[hand].not_above - taken[hand].not_above};
              ASSERT_EQ(sum, expected[hand]) << hand;
            }
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace pokermath
