// Omaha equity of given hands: golden figures, and random ones against the plain count.

#include "pokermath/omaha.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "eval/rank_sets.h"
#include "kernels/omaha_cliques.h"
#include "kernels/omaha_every_hand.h"
#include "kernels/omaha_matchup.h"
#include "pokermath/cards.h"
#include "pokermath/equity.h"
#include "pokermath/poker_logic.h"
#include "tests/cards/dealer.h"
#include "tests/golden_rows.h"

namespace pokermath {
namespace {

using Cards = std::vector<int>;

Cards CardsOf(const std::string& text) { return ParseCards(text).cards; }

TEST(OmahaEquity, GoldenHandsAgainstHands) {
  const PokerLogic logic;
  const auto rows = GoldenRows("omaha_hand_vs_hand.csv");
  ASSERT_EQ(rows.size(), 32u);
  for (const auto& row : rows) {
    const int size = std::stoi(row[0]);
    Cards hand1 = CardsOf(row[1]);
    Cards hand2 = CardsOf(row[2]);
    Cards board = CardsOf(row[3]);
    int count = -1, time = -1;
    const double percent =
        board.empty() ? logic.RiverEquityHandVsHandOnPreFlopCommon(hand1.data(), size, hand2.data(),
                                                                   count, time)
        : board.size() == 3 ? logic.RiverEquityHandVsHandOnFlopCommon(
                                  hand1.data(), size, hand2.data(), board.data(), 3, count, time)
                            : logic.RiverEquityHandVsHandOnTurnCommon(
                                  hand1.data(), size, hand2.data(), board.data(), 4, count, time);
    EXPECT_EQ(count, std::stoi(row[4])) << row[1] << " " << row[2];
    EXPECT_GE(time, 0);
    EXPECT_EQ(percent, (std::stod(row[5]) + 0.5 * std::stod(row[6])) / count * 100)
        << row[1] << " " << row[2] << " " << row[3];
  }
}

TEST(OmahaEquity, GoldenMultiway) {
  const PokerLogic logic;
  for (const auto& row : GoldenRows("omaha_multiway.csv")) {
    const int size = std::stoi(row[0]);
    Cards cards = CardsOf(row[1]);
    const Cards dead = CardsOf(row[2]);
    Cards board = CardsOf(row[3]);
    const int players = static_cast<int>(cards.size()) / size;
    cards.insert(cards.end(), dead.begin(), dead.end());
    const int dead_count = static_cast<int>(dead.size());
    int count = -1, time = -1;
    const double percent =
        board.empty() ? logic.RiverEquityHandsOnPreFlopCommon(cards.data(), size, players,
                                                              dead_count, count, time)
        : board.size() == 3
            ? logic.RiverEquityHandsOnFlopCommon(cards.data(), size, players, dead_count,
                                                 board.data(), count, time)
            : logic.RiverEquityHandsOnTurnCommon(cards.data(), size, players, dead_count,
                                                 board.data(), count, time);
    EXPECT_EQ(count, std::stoi(row[4])) << row[1];
    EXPECT_NEAR(percent, std::stod(row.back()), 1e-8) << row[1];
  }
}

// Visits every way to complete a board.
template <typename Visit>
void ForEachBoard(const Cards& cards, const Cards& dead, Cards& board, const Visit& visit,
                  int first = 0) {
  if (board.size() == 5) return visit();
  for (int card = first; card < 52; ++card) {
    if (std::ranges::count(cards, card) + std::ranges::count(dead, card) +
            std::ranges::count(board, card) !=
        0) {
      continue;
    }
    board.push_back(card);
    ForEachBoard(cards, dead, board, visit, card + 1);
    board.pop_back();
  }
}

// The values of hands that lie one behind the other, by value(hand).
template <typename Value>
std::vector<int> ValuesOf(const Cards& cards, int size, const Value& value) {
  std::vector<int> values;
  for (std::size_t i = 0; i < cards.size(); i += static_cast<std::size_t>(size)) {
    Cards hand(cards.begin() + static_cast<std::ptrdiff_t>(i),
               cards.begin() + static_cast<std::ptrdiff_t>(i) + size);
    values.push_back(value(hand));
  }
  return values;
}

// Counts the first value if it is the best.
void AddShared(const std::vector<int>& values, std::array<std::int64_t, 11>& shared) {
  const int best = std::ranges::max(values);
  if (values[0] == best) ++shared[static_cast<std::size_t>(std::ranges::count(values, best) - 1)];
}

// Board by board, the best five of each hand.
SharedTally Plain(const Cards& cards, int size, const Cards& dead, Cards board) {
  SharedTally tally;
  ForEachBoard(cards, dead, board, [&] {
    ++tally.boards;
    AddShared(ValuesOf(cards, size,
                       [&](Cards& hand) {
                         int record[5];
                         return getCombinationOmahaFsm5Common(hand.data(), size, board.data(), 5,
                                                              record);
                       }),
              tally.shared);
  });
  return tally;
}

TEST(OmahaEquity, IsThePlainCountAtEveryInstructionLevel) {
  Dealer dealer(81);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 120; ++trial) {
    const int size = 4 + trial % 3;
    const int players = trial % 10 == 0 ? 40 / size : 2 + dealer.Below(3);
    const int known = trial % 40 == 0 ? 0 : 3 + trial % 4 / 2;
    const int dead_count = known == 0 ? 52 - players * size - 12 : dealer.Below(4);
    const Cards all = dealer.Deal(players * size + known + dead_count);
    const auto part = [&all](int from, int count) {
      return Cards(all.begin() + from, all.begin() + from + count);
    };
    const Cards cards = part(0, players * size);
    const Cards board = part(players * size, known);
    const Cards dead = part(players * size + known, dead_count);
    const SharedTally plain = Plain(cards, size, dead, board);
    for (const Isa isa : {Isa::kBaseline, Isa::kAvx2}) {
      if (isa > BestIsa()) continue;
      ASSERT_EQ(CountOmahaMatchup(isa, cards, size, dead, board), plain)
          << CardNames(cards) << " of " << size << " on " << CardNames(board);
    }
  }
}

TEST(OmahaEquity, GoldenAgainstEveryHand) {
  const PokerLogic logic;
  for (const auto& row : GoldenRows("omaha_vs_random.csv")) {
    Cards hand = CardsOf(row[1]);
    Cards board = CardsOf(row[2]);
    const std::string& scope = row[3];
    const std::string trace = row[1] + " " + row[2] + " " + scope;
    const Tally golden = {std::stoll(row[5]), std::stoll(row[6]), std::stoll(row[4])};
    const Street street =
        scope.ends_with("only") ? static_cast<Street>(board.size()) : Street::kRiver;
    EXPECT_EQ(CountOmahaAgainstAll(BestIsa(), hand, board, street), golden) << trace;
    EXPECT_EQ(CountOmahaAgainstAll(Isa::kBaseline, hand, board, street), golden) << trace;
    if (hand.size() == 5 || scope == "flop_all_runouts") continue;
    const double percent = (std::stod(row[5]) + 0.5 * std::stod(row[6])) / std::stod(row[4]) * 100;
    const auto check = [&](auto ask) {
      int count = -1;
      EXPECT_DOUBLE_EQ(ask(hand.data(), board.data(), count), percent) << trace;
      EXPECT_EQ(count, std::stoi(row[4])) << trace;
    };
    if (scope == "river") {
      check(std::bind_front(&PokerLogic::RiverEquityHandVsRandomOnRiver, &logic));
      check(RiverEquityHandVsRandomOnRiver_ofsm7);
    } else if (scope == "turn_all_rivers") {
      check(std::bind_front(&PokerLogic::RiverEquityHandVsRandomOnTurn, &logic));
      check(RiverEquityHandVsRandomOnTurnFsm5);
    } else {
      check(scope == "turn_only" ? TurnEquityHandVsRandomOnTurnFsm5
                                 : FlopEquityHandVsRandomOnFlopFsm5);
    }
  }
}

// Every hand of `size` cards out of some, each as a list.
template <typename Visit>
void ForEachHand(const Cards& live, std::size_t size, Cards& hand, std::size_t first, Visit visit) {
  if (hand.size() == size) return visit(hand);
  for (std::size_t i = first; i < live.size(); ++i) {
    hand.push_back(live[i]);
    ForEachHand(live, size, hand, i + 1, visit);
    hand.pop_back();
  }
}

TEST(OmahaEquity, AgainstEveryHandIsThePlainCount) {
  Dealer dealer(82);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 14; ++trial) {
    const std::size_t size = trial == 0 ? 5 : 4;
    const int known = 3 + trial % 3;
    const auto street = static_cast<Street>(known);
    Cards cards = dealer.Deal(static_cast<int>(size) + known);
    Cards hand(cards.begin(), cards.begin() + static_cast<std::ptrdiff_t>(size));
    Cards board(cards.begin() + static_cast<std::ptrdiff_t>(size), cards.end());
    Cards live;
    for (int card = 0; card < 52; ++card) {
      if (std::ranges::count(cards, card) == 0) live.push_back(card);
    }
    const auto value = [&](Cards& holding) {
      int record[5];
      return getCombinationOmahaFsm5Common(holding.data(), static_cast<int>(size), board.data(),
                                           known, record);
    };
    const int hero = value(hand);
    Tally plain;
    Cards opponent;
    ForEachHand(live, size, opponent, 0, [&](Cards& other) {
      const int other_value = value(other);
      plain.wins += hero > other_value ? 1 : 0;
      plain.ties += hero == other_value ? 1 : 0;
      ++plain.cases;
    });
    EXPECT_EQ(CountOmahaAgainstAll(BestIsa(), hand, board, street), plain)
        << CardNames(hand) << " on " << CardNames(board);
    // A card that nobody holds.
    if (trial % 3 == 0) {
      const int dead = live[0];
      Tally without = plain;
      ForEachHand(Cards(live.begin() + 1, live.end()), size - 1, opponent, 0, [&](Cards& rest) {
        Cards other = rest;
        other.push_back(dead);
        const int other_value = value(other);
        without.wins -= hero > other_value ? 1 : 0;
        without.ties -= hero == other_value ? 1 : 0;
        --without.cases;
      });
      EXPECT_EQ(CountOmahaAgainstAll(BestIsa(), hand, board, street, {&dead, 1}), without);
    }
  }
}

// Of few cards that are left, at every instruction level: the sum of matchups.
TEST(OmahaEquity, AgainstEveryHandOfAnySizeIsTheSumOfMatchups) {
  Dealer dealer(87);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 36; ++trial) {
    const std::size_t size = 4 + static_cast<std::size_t>(trial % 3);
    const int known = trial % 4 == 0 ? 4 : 5;
    const Cards all = dealer.Deal(40);
    const auto first = all.begin() + static_cast<std::ptrdiff_t>(size);
    const Cards hand(all.begin(), first), board(first, first + known),
        dead(first + known, all.end());
    Cards live, opponent;
    for (int card = 0; card < 52; ++card) {
      if (std::ranges::count(all, card) == 0) live.push_back(card);
    }
    Tally high;
    HighLowTally split;
    ForEachHand(live, size, opponent, 0, [&](const Cards& other) {
      Cards both = hand;
      both.insert(both.end(), other.begin(), other.end());
      const SharedTally one = OmahaHands(both, static_cast<int>(size), board, dead);
      high += {one.shared[0], one.shared[1], one.boards};
      const HighLowTally low = OmahaHighLowHands(both, static_cast<int>(size), board, dead);
      split.boards += low.boards;
      split.scoops += low.scoops;
      split.losses += low.losses;
      split.lows += low.lows;
      for (std::size_t k = 0; k < 2; ++k) {
        split.whole[k] += low.whole[k];
        split.high[k] += low.high[k];
        split.low[k] += low.low[k];
      }
    });
    for (const Isa isa : {Isa::kBaseline, Isa::kAvx2}) {
      if (isa > BestIsa()) continue;
      EXPECT_EQ(CountOmahaAgainstAll(isa, hand, board, Street::kRiver, dead), high)
          << CardNames(hand) << " on " << CardNames(board);
      EXPECT_EQ(CountHighLowAgainstAll(isa, hand, board, Street::kRiver, dead), split)
          << CardNames(hand) << " on " << CardNames(board);
    }
  }
}

void CompareEveryHandAtOnce(Dealer& dealer, std::size_t size, int trials) {
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < trials; ++trial) {
    const int step = dealer.Below(OmahaEveryHand::kSteps);
    OmahaEveryHand every(static_cast<int>(size));
    every.Add(step);
    const Cards hand = dealer.Deal(static_cast<int>(size));
    // The boards whose ranks have this number.
    std::int64_t plain = 0;
    Cards live, board;
    for (int card = 0; card < 52; ++card) {
      if (std::ranges::count(hand, card) == 0) live.push_back(card);
    }
    ForEachHand(live, 5, board, 0, [&](const Cards& boards) {
      std::array<int, 5> ranks;
      std::ranges::transform(boards, ranks.begin(), [](int card) { return card % 13; });
      std::ranges::sort(ranks);
      if (MultisetNumber(ranks) != step) return;
      const Tally tally = CountOmahaAgainstAll(BestIsa(), hand, boards, Street::kRiver);
      plain += 2 * tally.wins + tally.ties;
    });
    EXPECT_EQ(every.Of(hand), plain) << CardNames(hand) << " on boards " << step;
  }
}

TEST(OmahaEquity, EveryHandAtOnceIsEachHandOnEachBoard) {
  Dealer dealer(83);
  CompareEveryHandAtOnce(dealer, 4, 4);
  CompareEveryHandAtOnce(dealer, 5, 4);
}

TEST(OmahaEquitySlow, EveryHandOfSixAtOnceIsEachHandOnEachBoard) {
  Dealer dealer(88);
  CompareEveryHandAtOnce(dealer, 6, 2);
}

// The same for a split pot.
HighLowTally PlainHighLow(const Cards& cards, int size, const Cards& dead, Cards board) {
  HighLowTally tally;
  const PokerLogic logic;
  ForEachBoard(cards, dead, board, [&] {
    const auto value = [&](Cards& hand) {
      int record[5];
      return getCombinationOmahaFsm5Common(hand.data(), size, board.data(), 5, record);
    };
    const auto low_of = [&](Cards& hand) {
      const int low = logic.SetLowValueCombinationOmahaCommon(hand.data(), size, board.data(), 5);
      return low == 0 ? 0 : 100000 - low;
    };
    const std::vector<int> lows = ValuesOf(cards, size, low_of);
    const bool low = std::ranges::max(lows) > 0;
    HighLowTally one = {.boards = 1};
    AddShared(ValuesOf(cards, size, value), low ? one.high : one.whole);
    if (low) AddShared(lows, one.low);
    ++tally.boards;
    tally.scoops += one.Equity() == 1.0 ? 1 : 0;
    tally.losses += one.Equity() == 0.0 ? 1 : 0;
    tally.lows += low ? 1 : 0;
    for (std::size_t k = 0; k < tally.whole.size(); ++k) {
      tally.whole[k] += one.whole[k];
      tally.high[k] += one.high[k];
      tally.low[k] += one.low[k];
    }
  });
  return tally;
}

TEST(OmahaHighLow, GoldenMultiway) {
  const PokerLogic logic;
  const auto rows = GoldenRows("omaha_hilo_multiway.csv");
  ASSERT_EQ(rows.size(), 22u);
  for (const auto& row : rows) {
    const int size = std::stoi(row[0]);
    Cards cards = CardsOf(row[1]);
    const Cards dead = CardsOf(row[2]);
    Cards board = CardsOf(row[3]);
    const int players = static_cast<int>(cards.size()) / size;
    EXPECT_NEAR(OmahaHighLowHands(cards, size, board, dead).Equity(), std::stod(row[6]) / 100,
                1e-10);
    cards.insert(cards.end(), dead.begin(), dead.end());
    const int dead_count = static_cast<int>(dead.size());
    int count = -1, time = -1;
    const double percent =
        board.empty() ? logic.RiverEquityHandsOnPreFlopCommonHL(cards.data(), size, players,
                                                                dead_count, count, time)
        : board.size() == 3
            ? logic.RiverEquityHandsOnFlopCommonHL(cards.data(), size, players, dead_count,
                                                   board.data(), count, time)
            : logic.RiverEquityHandsOnTurnCommonHL(cards.data(), size, players, dead_count,
                                                   board.data(), count, time);
    EXPECT_EQ(count, std::stoi(row[4])) << row[1];
    EXPECT_NEAR(percent, std::stod(row[6]), 1e-8) << row[1];
  }
}

TEST(OmahaHighLow, IsThePlainCountAtEveryInstructionLevel) {
  Dealer dealer(84);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 80; ++trial) {
    const int size = 4 + trial % 3;
    const int players = trial % 10 == 0 ? 7 : 2 + dealer.Below(3);
    const int known = 3 + trial / 3 % 3;
    const Cards all = dealer.Deal(players * size + known + 2);
    const auto part = [&all](int from, int count) {
      return Cards(all.begin() + from, all.begin() + from + count);
    };
    const Cards cards = part(0, players * size);
    const Cards board = part(players * size, known);
    const Cards dead = part(players * size + known, 2);
    const HighLowTally plain = PlainHighLow(cards, size, dead, board);
    for (const Isa isa : {Isa::kBaseline, Isa::kAvx2}) {
      if (isa > BestIsa()) continue;
      ASSERT_EQ(CountHighLowMatchup(isa, cards, size, dead, board), plain)
          << CardNames(cards) << " of " << size << " on " << CardNames(board);
    }
  }
}

TEST(OmahaHighLow, AgainstEveryHandIsThePlainCount) {
  const PokerLogic logic;
  Dealer dealer(85);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 4; ++trial) {
    Cards cards = dealer.Deal(9);
    // Half the deals have a low.
    if (trial % 2 == 0) cards = CardsOf(trial % 4 == 0 ? "Ah2d9sKh" : "KhKd9s8c");
    for (const int card : dealer.Deal(20)) {
      const bool fits = trial % 2 == 1 || card % 13 < 7 || card % 13 == 12;
      if (cards.size() < 9 && fits && std::ranges::count(cards, card) == 0) cards.push_back(card);
    }
    if (cards.size() < 9) continue;
    const Cards hand(cards.begin(), cards.begin() + 4);
    const Cards board(cards.begin() + 4, cards.end());
    HighLowTally plain;
    Cards live, opponent;
    for (int card = 0; card < 52; ++card) {
      if (std::ranges::count(cards, card) == 0) live.push_back(card);
    }
    ForEachHand(live, 4, opponent, 0, [&](const Cards& other) {
      Cards both = hand;
      both.insert(both.end(), other.begin(), other.end());
      const HighLowTally one = CountHighLowMatchup(BestIsa(), both, 4, {}, board);
      plain.boards += one.boards;
      plain.scoops += one.scoops;
      plain.losses += one.losses;
      plain.lows += one.lows;
      for (std::size_t k = 0; k < 2; ++k) {
        plain.whole[k] += one.whole[k];
        plain.high[k] += one.high[k];
        plain.low[k] += one.low[k];
      }
    });
    EXPECT_EQ(CountHighLowAgainstAll(BestIsa(), hand, board, Street::kRiver), plain)
        << CardNames(hand) << " on " << CardNames(board);
    EXPECT_EQ(CountHighLowAgainstAll(Isa::kBaseline, hand, board, Street::kRiver), plain);
    Cards four = hand, five = board;
    int count = -1;
    const double exact = logic.RiverEquityHandVsRandomOnRiverHL(four.data(), five.data(), count);
    EXPECT_DOUBLE_EQ(exact, 100 * plain.Equity());
    EXPECT_EQ(count, 123410);
    // Sampled shares have a standard deviation of no more than one half.
    PokerLogic sampling;
    int trials = 20000, time = 60000;
    EXPECT_NEAR(sampling.EquityHandVsRandomHL(four.data(), 4, five.data(), 5, 5, trials, time),
                exact, 2.5);
    sampling.trialCount = 20000;
    EXPECT_NEAR(100 * sampling.getProbabilityOfWinOmahaHL(four.data(), five.data(), 5, 2), exact,
                2.5);
  }
  Cards hand = CardsOf("Ah2d9sKh");
  EXPECT_EQ(logic.getProbabilityOfWinOmahaHL(hand.data(), nullptr, 6, 2), 0.0);
  EXPECT_EQ(logic.getProbabilityOfWinOmahaHL(hand.data(), nullptr, 0, 11), 0.0);
}

// Deals again what a function has dealt, whose seed is the time of day.
template <typename Ask, typename Again>
void ExpectReplay(const Ask& ask, const Again& again) {
  for (int attempt = 0; attempt < 3; ++attempt) {
    EasyRandom generator(0, 51);
    generator.SetTimerSeed();
    const double replayed = again([&generator] { return generator.DrawRandomNumber(); });
    const double asked = ask();
    if (std::abs(asked - replayed) < 1e-9) return;
  }
  ADD_FAILURE() << "not the deals that the seed gives";
}

TEST(OmahaSampling, DealsAsItsSeedSays) {
  PokerLogic logic;
  Dealer dealer(86);
  SCOPED_TRACE(dealer.Trace());
  constexpr int kTrials = 300;
  logic.trialCount = kTrials;
  for (int trial = 0; trial < 12; ++trial) {
    const int known = std::vector{0, 3, 4, 5}[static_cast<std::size_t>(trial % 4)];
    const int players = 2 + trial % 3 * 4;
    const int size = 4 + trial % 2;
    Cards hand = dealer.Deal(size);
    if (trial % 3 == 0) hand = size == 4 ? CardsOf("Ah2d9sKh") : CardsOf("Ah2d9sKh3c");
    Cards board;
    for (const int card : dealer.Deal(14)) {
      if (static_cast<int>(board.size()) < known && std::ranges::count(hand, card) == 0) {
        board.push_back(card);
      }
    }
    // Deals one trial; the shares of a pot and of a split pot.
    const auto deal = [&](const auto& draw, int target, int opponents, bool split) {
      Cards taken = hand;
      taken.insert(taken.end(), board.begin(), board.end());
      const auto next = [&] {
        int card = draw();
        while (std::ranges::count(taken, card) != 0) card = draw();
        taken.push_back(card);
        return card;
      };
      Cards cards = hand, full = board;
      while (static_cast<int>(full.size()) < target) full.push_back(next());
      for (int i = 0; i < opponents; ++i) {
        for (int k = 0; k < size; ++k) cards.push_back(next());
        // Nobody is dealt to once the hand has lost what there is to win.
        if (full.size() < 5) continue;
        const double share = split ? PlainHighLow(cards, size, {}, full).Equity()
                                   : Plain(cards, size, {}, full).Equity();
        if (share == 0.0) return 0.0;
      }
      if (full.size() == 5) {
        return split ? PlainHighLow(cards, size, {}, full).Equity()
                     : Plain(cards, size, {}, full).Equity();
      }
      // One opponent on a shorter board.
      Cards other(cards.begin() + size, cards.end());
      int record[5];
      const auto value = [&](Cards& of) {
        return getCombinationOmahaFsm5Common(of.data(), size, full.data(), target, record);
      };
      const auto low = [&](Cards& of) {
        const int found =
            logic.SetLowValueCombinationOmahaCommon(of.data(), size, full.data(), target);
        return found == 0 ? 0 : 100000 - found;
      };
      const auto half = [](int own, int others) {
        return own > others ? 1.0 : own == others ? 0.5 : 0.0;
      };
      const double high = half(value(hand), value(other));
      const bool some_low = split && std::max(low(hand), low(other)) > 0;
      return some_low ? 0.5 * high + 0.5 * half(low(hand), low(other)) : high;
    };
    const auto sum = [&](int target, int opponents, bool split) {
      return [&, target, opponents, split](const auto& draw) {
        double shares = 0;
        for (int i = 0; i < kTrials; ++i) shares += deal(draw, target, opponents, split);
        return shares / kTrials;
      };
    };
    SCOPED_TRACE(CardNames(hand) + " on " + CardNames(board));
    for (const bool split : {false, true}) {
      if (size == 4) {
        ExpectReplay(
            [&] {
              return split ? logic.getProbabilityOfWinOmahaHL(hand.data(), board.data(), known,
                                                              players)
                           : logic.getProbabilityOfWinOmaha(hand.data(), board.data(), known,
                                                            players);
            },
            sum(5, players - 1, split));
      }
      const int target = std::max(known, 3 + trial % 3);
      ExpectReplay(
          [&] {
            int trials = kTrials, time = 60000;
            return (split ? logic.EquityHandVsRandomHL(hand.data(), size, board.data(), known,
                                                       target, trials, time)
                          : logic.EquityHandVsRandomCommon(hand.data(), size, board.data(), known,
                                                           target, trials, time)) /
                   100;
          },
          sum(target, 1, split));
    }
  }
}

TEST(OmahaSampling, ComesNearTheExactShare) {
  PokerLogic logic;
  Cards hand = CardsOf("9d3sTcJd"), board = CardsOf("TsKdAc3h7s");
  int count = 0;
  // The standard error of 20,000 deals is 0.35; the seed is the time of day.
  const auto near = [](double percent, double exact) { EXPECT_NEAR(percent, exact, 2.5); };
  const double river = logic.RiverEquityHandVsRandomOnRiver(hand.data(), board.data(), count);
  const double turn = logic.RiverEquityHandVsRandomOnTurn(hand.data(), board.data(), count);
  for (const auto& [known, exact] : {std::pair(5, river), {4, turn}}) {
    int trials = 20000, time = 60000;
    near(logic.EquityHandVsRandomCommon(hand.data(), 4, board.data(), known, 5, trials, time),
         exact);
    EXPECT_EQ(trials, 20000);
    EXPECT_LT(time, 60000);
    logic.trialCount = 20000;
    near(100 * logic.getProbabilityOfWinOmaha(hand.data(), board.data(), known, 2), exact);
  }
  int trials = 20000, time = 60000;
  near(logic.EquityHandVsRandomCommon(hand.data(), 4, board.data(), 3, 3, trials, time),
       FlopEquityHandVsRandomOnFlopFsm5(hand.data(), board.data(), count));
  Tally runouts;
  for (int first = 0; first < 52; ++first) {
    for (int second = first + 1; second < 52; ++second) {
      const Cards complete = {board[0], board[1], board[2], first, second};
      const auto is_known = [&](int card) {
        return std::ranges::count(hand, card) +
                   std::ranges::count(board.begin(), board.begin() + 3, card) !=
               0;
      };
      if (!is_known(first) && !is_known(second)) {
        runouts += CountOmahaAgainstAll(BestIsa(), hand, complete, Street::kRiver);
      }
    }
  }
  EXPECT_EQ(runouts.cases, 122175900);
  near(logic.RiverEquityHandVsRandomOnFlopLight(hand.data(), board.data(), trials, time),
       100 * runouts.Equity());
  near(logic.EquityHandVsRandomCommon(hand.data(), 4, board.data(), 3, 5, trials, time),
       100 * runouts.Equity());

  // A range of one hand is a hand.
  Cards other = CardsOf("AhAdKhQc");
  const PokerLogic::OmahaRange range = {{other.begin(), other.end()}, {8, 7, 1, 0}};
  const PokerLogic::OmahaRange one = {{other.begin(), other.end()}};
  const double exact = logic.RiverEquityHandVsHandOnFlopCommon(hand.data(), 4, other.data(),
                                                               board.data(), 3, count, time);
  time = 60000;
  near(logic.RiverEquityHandVsRangeOnFlopLight(hand.data(), board.data(), range, trials, time),
       exact);
  EXPECT_EQ(logic.FlopEquityHandVsRangeOnFlop(hand.data(), board.data(), range, count), 0.0);
  EXPECT_EQ(count, 1) << "the ten of clubs is the hero's";
  const double all_flops = logic.FlopEquityHandVsRangeOnPreFlop(hand.data(), one, count);
  EXPECT_TRUE(std::isnan(all_flops)) << "some flops block the only hand";
  EXPECT_EQ(count, 0);

  // Out of time at the first look, or at a later one.
  trials = 2000000000;
  time = -1;
  logic.EquityHandVsRandomCommon(hand.data(), 4, board.data(), 0, 5, trials, time);
  EXPECT_EQ(trials, 1);
  trials = 2000000000;
  time = 3;
  logic.EquityHandVsRandomCommon(hand.data(), 4, board.data(), 0, 5, trials, time);
  EXPECT_EQ(trials % 10000, 1);
  EXPECT_GT(time, 3);
  trials = 0;
  EXPECT_TRUE(
      std::isnan(logic.EquityHandVsRandomCommon(hand.data(), 4, board.data(), 0, 5, trials, time)));
  EXPECT_EQ(logic.getProbabilityOfWinOmaha(hand.data(), board.data(), 6, 2), 0.0);
  EXPECT_EQ(logic.getProbabilityOfWinOmaha(hand.data(), board.data(), 0, 11), 0.0);
}

// Four cards of each of a few ranks are left, so that suits see the same cards.
TEST(OmahaEquity, AgainstEveryHandBeforeTheFlopIsTheSumOfMatchups) {
  const Cards hand = CardsOf("AhAdKh9s");
  Cards live, dead, opponent;
  for (int card = 0; card < 52; ++card) {
    if (std::ranges::count(hand, card) != 0) continue;
    (card % 13 >= 9 || card % 13 == 5 ? live : dead).push_back(card);
  }
  dead.insert(dead.end(), {live[0], live[1], live[5]});
  for (const int card : {live[5], live[1], live[0]}) std::erase(live, card);
  Tally plain;
  ForEachHand(live, 4, opponent, 0, [&](const Cards& other) {
    Cards both = hand;
    both.insert(both.end(), other.begin(), other.end());
    const SharedTally one = OmahaHands(both, 4, {}, dead);
    plain.wins += one.shared[0];
    plain.ties += one.shared[1];
    plain.cases += one.boards;
  });
  EXPECT_EQ(OmahaHandVsRandom(hand, {}, Street::kRiver, dead), plain);
  EXPECT_GT(plain.wins, 0);
  EXPECT_GT(plain.ties, 0);

  const Cards turn = CardsOf("2c3c4d5h");
  EXPECT_EQ(OmahaHandVsRandom(hand, turn, Street::kFlop), Tally{}) << "a board that is too long";
  int calls = 0;
  const auto stop = [&calls](std::int64_t done, std::int64_t all) {
    EXPECT_LT(done, all);
    return ++calls < 2;
  };
  EXPECT_EQ(OmahaHandVsRandom(hand, {}, Street::kRiver, {}, stop), Tally{}) << "stopped";
  EXPECT_EQ(calls, 2);
}

TEST(OmahaEquitySlow, GoldenAgainstEveryHandBeforeTheFlop) {
  const Tally golden = {148999832330, 707700224, 211315436640};
  EXPECT_EQ(OmahaHandVsRandom(CardsOf("AhAdKhKd")), golden);
  const Tally rainbow = {113337793971, 4824849518, 211315436640};
  EXPECT_EQ(OmahaHandVsRandom(CardsOf("AhKdQcJs")), rainbow);
}

TEST(OmahaEquity, OddQuestions) {
  const PokerLogic logic;
  Cards hand1 = CardsOf("AhAdKhKd"), hand2 = CardsOf("JsTs9c8c"), board = CardsOf("2c3c4d5h");
  int count = -1, time = -1;
  EXPECT_EQ(logic.RiverEquityHandVsHandOnFlopCommon(hand1.data(), 4, hand2.data(), board.data(), 4,
                                                    count, time),
            0.0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(logic.RiverEquityHandsOnTurnCommon(hand1.data(), 4, 1, 0, board.data(), count, time),
            100.0)
      << "one hand alone";
  EXPECT_EQ(count, 44);
  Cards everything(52);
  for (int card = 0; card < 52; ++card) everything[static_cast<std::size_t>(card)] = card;
  EXPECT_TRUE(
      std::isnan(logic.RiverEquityHandsOnPreFlopCommon(everything.data(), 4, 12, 0, count, time)));
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(
      std::isnan(logic.RiverEquityHandsOnPreFlopCommon(hand1.data(), 4, 0, 0, count, time)));
  // Another number of cards than the hands have, and sizes that no Omaha hand has.
  for (const int cards : {0, 1, 3, 5, 6, 7, 8, 9, 10}) {
    for (const int size : {-4, 0, 1, 2, 3, 4, 5, 6, 8}) {
      const auto hands = std::span<const int>(everything).first(static_cast<std::size_t>(cards));
      const bool served = size >= 4 && size <= 6 && cards > 0 && cards % size == 0;
      const int boards = served ? Choose(52 - cards, 5) : 0;
      EXPECT_EQ(OmahaHands(hands, size).boards, boards) << cards << " by " << size;
      EXPECT_EQ(OmahaHighLowHands(hands, size).boards, boards) << cards << " by " << size;
    }
  }
  EXPECT_EQ(OmahaHands(hand1, 4, hand2).boards, 44);
  EXPECT_EQ(OmahaHands(hand1, 4, CardsOf("2c3c")), SharedTally{});
  int record[5] = {7, 7, 7, 7, 7};
  EXPECT_EQ(getCombinationOmahaFsm5Common(hand1.data(), 1, board.data(), 4, record), -1);
  EXPECT_EQ(logic.getCombinationOmahaCommon(hand1.data(), 4, board.data(), 2, record), 100000);
  EXPECT_EQ(record[0], 7);
}

}  // namespace
}  // namespace pokermath
