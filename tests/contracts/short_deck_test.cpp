// Short-deck equity: golden figures, and every function against plain loops.

#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "contracts/state_tables.h"
#include "kernels/matchup.h"
#include "kernels/runouts.h"
#include "platform/isa.h"
#include "platform/text.h"
#include "pokermath/cards.h"
#include "pokermath/equity.h"
#include "pokermath/messages.h"
#include "pokermath/poker_logic.h"
#include "tests/cards/dealer.h"
#include "tests/golden_rows.h"
#include "tests/platform/scratch_folder.h"

namespace pokermath {
namespace {

using Cards = std::vector<int>;

Cards CardsOf(std::string_view text) { return ParseCards(text).cards; }
bool Holds(const Cards& cards, int card) { return std::ranges::count(cards, card) != 0; }

// Cards of a few ranks or suits at times, so that flushes and full houses are common.
Cards DealShort(Dealer& dealer, std::size_t count) {
  const int kind = dealer.Below(3);
  const int low = 4 + dealer.Below(4);
  Cards cards;
  while (cards.size() < count) {
    const int card = dealer.Below(52);
    const bool fits = kind == 0 || (kind == 1 ? card / 13 % 2 == low % 2 : card % 13 < low + 6);
    if (card % 13 >= (kind == 2 ? low : 4) && fits && !Holds(cards, card)) cards.push_back(card);
  }
  return cards;
}

struct Score {
  double won = 0;
  double cases = 0;
  double Share() const { return won / cases; }
};

// Every way to complete the board, every live holding.
Score Plain(const Cards& hand, Cards board, std::size_t street,
            std::span<const Combination> holdings, int first = 0) {
  Score score;
  if (board.size() < street) {
    for (int card = first; card < 52; ++card) {
      if (card % 13 < 4 || Holds(hand, card) || Holds(board, card)) continue;
      board.push_back(card);
      const Score part = Plain(hand, board, street, holdings, card + 1);
      board.pop_back();
      score.won += part.won;
      score.cases += part.cases;
    }
    return score;
  }
  // To the turn the best five cards count, whatever the sixth is.
  const auto value = [&](int card1, int card2) {
    Cards cards = board;
    cards.insert(cards.end(), {card1, card2});
    if (street == 4) std::erase_if(cards, [](int card) { return card % 13 < 4; });
    return EvaluateShortDeck(cards.data(), static_cast<int>(cards.size()));
  };
  const int hero = value(hand[0], hand[1]);
  for (const auto& [card1, card2] : holdings) {
    if (card1 % 13 < 4 || card2 % 13 < 4 || Holds(hand, card1) || Holds(hand, card2) ||
        Holds(board, card1) || Holds(board, card2)) {
      continue;
    }
    const int other = value(card1, card2);
    score.won += hero > other ? 1.0 : hero == other ? 0.5 : 0.0;
    score.cases += 1;
  }
  return score;
}

// Some holdings are blocked, some hold a card below six, some are stored both ways.
Spec RandomRange(Dealer& dealer, int holdings) {
  Spec spec;
  for (int i = 0; i < holdings; ++i) {
    const Cards cards = i % 6 == 0 ? dealer.Deal(2) : DealShort(dealer, 2);
    spec.Insert(cards[0], cards[1]);
    if (i % 5 == 0) spec.Insert(cards[1], cards[0]);
  }
  return spec;
}

TEST(ShortDeckEquity, GoldenMatchups) {
  const auto rows = GoldenRows("shortdeck_hand_vs_hand.csv");
  ASSERT_EQ(rows.size(), 20u);
  for (const auto& row : rows) {
    Cards hand1 = CardsOf(row[0]);
    Cards hand2 = CardsOf(row[1]);
    const Tally expected = {std::stoll(row[3]), std::stoll(row[4]), std::stoll(row[2])};
    EXPECT_EQ(ShortDeckHandVsHand(std::span<const int, 2>(hand1), std::span<const int, 2>(hand2)),
              expected)
        << row[0] << " " << row[1];
    double wins, boards;
    getProbabilityOfWinWithNoBoard6Plus(hand2.data(), hand1.data(), wins, boards);
    EXPECT_EQ(wins, std::stod(row[5]) + 0.5 * std::stod(row[4]));
    EXPECT_EQ(boards, 201376);
  }
  PokerLogic logic;
  for (const auto& row : GoldenRows("shortdeck_vs_random.csv")) {
    Cards hand = CardsOf(row[0]);
    int count = 0, elapsed = -1;
    const double share = logic.RiverEquityHandVsRandomOnPreFlop6Plus(hand.data(), count, elapsed);
    EXPECT_EQ(count, 112971936);
    EXPECT_GE(elapsed, 0);
    EXPECT_EQ(share, (std::stod(row[2]) + 0.5 * std::stod(row[3])) / 112971936) << row[0];
  }
}

TEST(ShortDeckEquity, KernelsAreThePlainCountAtEveryInstructionLevel) {
  Dealer dealer(61);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 600; ++trial) {
    const std::size_t known = trial % 60 == 0 ? 0 : 3 + static_cast<std::size_t>(trial % 2);
    const std::size_t street = known == 0 ? 3 + static_cast<std::size_t>(trial / 60 % 2)
                               : trial % 3 == 0 && known == 3 ? 4
                                                              : 5;
    const Cards cards = DealShort(dealer, 4 + known);
    const Cards board(cards.begin() + 4, cards.end());
    const Combination opponent(cards[2], cards[3]);
    const Score plain = Plain({cards[0], cards[1]}, board, street, {&opponent, 1});
    for (const Isa isa : IsasOfMachine()) {
      const Tally tally =
          known == 0
              ? CountMatchup(isa, Deck::kShort, &cards[0], &cards[2], static_cast<Street>(street))
              : CountHands(Runouts(isa, Deck::kShort, board, static_cast<int>(street)), &cards[0],
                           &cards[2]);
      ASSERT_EQ(static_cast<double>(tally.wins) + 0.5 * static_cast<double>(tally.ties), plain.won)
          << CardNames(cards) << " street " << street;
      ASSERT_EQ(static_cast<double>(tally.cases), plain.cases);
    }
  }
}

TEST(ShortDeckEquity, EveryRangeFunctionIsThePlainCount) {
  Dealer dealer(62);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 8; ++trial) {
    Cards cards = DealShort(dealer, 7);
    Cards hand(cards.begin(), cards.begin() + 2);
    Cards board(cards.begin() + 2, cards.end());
    const Spec spec = RandomRange(dealer, 12);
    const auto plain = [&](std::ptrdiff_t known, std::size_t street) {
      return Plain(hand, Cards(board.begin(), board.begin() + known), street,
                   {spec.combinations().begin(), spec.combinations().end()})
          .Share();
    };
    for (const int known : {3, 4, 5}) {
      EXPECT_EQ(getProbabilityOfWinBySpectr6Plus(hand.data(), board.data(), known, spec),
                plain(known, 5));
      EXPECT_EQ(getProbabilityOfWinBySpectrToFlop6Plus(hand.data(), board.data(), known, spec),
                plain(3, 3));
      EXPECT_EQ(getProbabilityOfWinBySpectrToTurn6Plus(hand.data(), board.data(), known, spec),
                plain(known == 3 ? 3 : 4, 4));
    }
    EXPECT_EQ(getProbabilityOfWinBySpectrToFlop6Plus(hand.data(), nullptr, 0, spec), plain(0, 3));
    if (trial == 0) {
      EXPECT_EQ(getProbabilityOfWinBySpectrToTurn6Plus(hand.data(), nullptr, 0, spec), plain(0, 4));
      const double river = plain(0, 5);
      for (const int workers : {1, 3}) {
        omp_set_num_threads(workers);
        EXPECT_EQ(getProbabilityOfWinBySpectr6Plus(hand.data(), nullptr, 0, spec), river);
      }
    }
    for (const int known : {-1, 1, 2, 6}) {
      EXPECT_EQ(getProbabilityOfWinBySpectr6Plus(hand.data(), board.data(), known, spec), 0.0);
      EXPECT_EQ(getProbabilityOfWinBySpectrToFlop6Plus(hand.data(), board.data(), known, spec),
                0.0);
      EXPECT_EQ(getProbabilityOfWinBySpectrToTurn6Plus(hand.data(), board.data(), known, spec),
                0.0);
    }
    // A board or a hand with a card below six.
    hand[0] = dealer.Below(4);
    EXPECT_EQ(getProbabilityOfWinBySpectrWithFlop6Plus(hand.data(), board.data(), spec),
              plain(3, 5));
    EXPECT_EQ(getProbabilityOfWinBySpectrToTurn6Plus(hand.data(), board.data(), 3, spec),
              plain(3, 4));
    hand[0] = cards[0];
    board[1] = dealer.Below(4);
    EXPECT_EQ(getProbabilityOfWinBySpectrToTurn6Plus(hand.data(), board.data(), 4, spec),
              plain(4, 4));
  }
  Cards aces = CardsOf("AhAd");
  EXPECT_TRUE(std::isnan(
      getProbabilityOfWinBySpectrWithNoBoard6Plus(aces.data(), ParseRange("AhAs,22").range)));
}

// One card below six, and two: what is in the deck plays.
TEST(ShortDeckEquity, ExhaustiveCardsBelowSixAgainstEveryHand) {
  const PokerLogic logic;
  for (const char* text : {"Th2c", "2c2d"}) {
    Cards hand = CardsOf(text), live;
    for (int card = 0; card < 52; ++card) {
      if (card % 13 >= 4 && !Holds(hand, card)) live.push_back(card);
    }
    // Every five of the live cards, then every two of the others.
    Score plain;
    int cards[7];
    const auto choose = [&](const auto& self, int chosen, std::size_t first) -> void {
      for (std::size_t i = first; chosen < 5 && i < live.size(); ++i) {
        cards[chosen] = live[i];
        self(self, chosen + 1, i + 1);
      }
      if (chosen < 5) return;
      int hero_cards = 5;
      for (const int card : hand) {
        if (card % 13 >= 4) cards[hero_cards++] = card;
      }
      const int hero = EvaluateShortDeck(cards, hero_cards);
      const std::uint64_t board = Bits(std::span(cards).first(5));
      for (std::size_t i = 0; i < live.size(); ++i) {
        if ((board & Bit(live[i])) != 0) continue;
        cards[5] = live[i];
        for (std::size_t j = i + 1; j < live.size(); ++j) {
          if ((board & Bit(live[j])) != 0) continue;
          cards[6] = live[j];
          const int other = EvaluateShortDeck(cards, 7);
          plain.won += hero > other ? 1.0 : hero == other ? 0.5 : 0.0;
          plain.cases += 1;
        }
      }
    };
    choose(choose, 0, 0);
    int count = 0, elapsed = 0;
    EXPECT_EQ(logic.RiverEquityHandVsRandomOnPreFlop6Plus(hand.data(), count, elapsed),
              plain.Share())
        << text;
    EXPECT_EQ(count, plain.cases);
  }
}

TEST(ShortDeckEquity, TheTableAnswersTheMatchupsThatItHolds) {
  ScratchFolder folder;
  const std::int32_t records[6] = {38 * 64 + 51, 12 * 64 + 25, 7, 38 * 64 + 51, 12 * 64 + 25, 9};
  SetContent(folder / "equity", std::string_view(reinterpret_cast<const char*>(records), 24));
  Cards aces = CardsOf("AsAh"), other_aces = CardsOf("AdAc");
  double wins, boards;
  EXPECT_EQ(GetWinHandVsHand6Plus(aces.data(), other_aces.data(), wins, boards), 1);
  EXPECT_EQ(std::pair(wins, boards), std::pair(100688.0, 201376.0));
  EXPECT_EQ(load_equity_table_6Plus(FromUtf8(folder / "equity")), 1);
  GetWinHandVsHand6Plus(aces.data(), other_aces.data(), wins, boards);
  EXPECT_EQ(std::pair(wins, boards), std::pair(3.5, 201376.0)) << "the first record wins";
  EXPECT_EQ(getProbabilityOfWinBySpectr6Plus(aces.data(), nullptr, 0, ParseRange("AdAc").range),
            3.5 / 201376);
  GetWinHandVsHand6Plus(other_aces.data(), aces.data(), wins, boards);
  EXPECT_EQ(wins, 100688);
  fsm5.equity.reset();
  // A card below six is worth nothing.
  Cards deuces = CardsOf("2h2d");
  getProbabilityOfWinWithNoBoard6Plus(aces.data(), deuces.data(), wins, boards);
  EXPECT_EQ(std::pair(wins, boards), std::pair(278256.0, 278256.0));
}

class ShortDeckSampling : public testing::Test {
 protected:
  ShortDeckSampling() {
    const StateEntries entries = BuildStates(kSixPlus7File);
    const auto header = StateHeader(kSixPlus7File, entries.size());
    std::string bytes(reinterpret_cast<const char*>(header.data()), header.size());
    bytes.append(reinterpret_cast<const char*>(entries.data()), entries.size() * sizeof entries[0]);
    SetContent(folder_ / "six-plus-7.bin", bytes);
    load_fsm7(FromUtf8(folder_ / ""));
  }
  ScratchFolder folder_;
  PokerLogic logic_;
};

TEST_F(ShortDeckSampling, DrawsAsHoldemDoes) {
  logic_.trialCount = 2000;
  for (const int players : {2, 6, 10}) {
    for (const char* known : {"", "Th9h6c", "KhQhAhTh7h"}) {
      Cards hand = CardsOf("JhJd");
      Cards board = CardsOf(known);
      std::srand(5);
      double sum = 0;
      for (int trial = 0; trial < logic_.trialCount; ++trial) {
        Cards used = hand;
        used.insert(used.end(), board.begin(), board.end());
        const auto draw = [&used] {
          int card;
          do {
            const int index = std::rand() % 36;
            card = index / 9 * 13 + index % 9 + 4;
          } while (Holds(used, card));
          used.push_back(card);
          return card;
        };
        while (used.size() < 7) draw();
        Cards seven(used.begin(), used.begin() + 7);
        const int hero = EvaluateShortDeck(seven.data(), 7);
        int sharers = 1;
        for (int i = 1; i < players && sharers > 0; ++i) {
          seven[0] = draw();
          seven[1] = draw();
          const int value = EvaluateShortDeck(seven.data(), 7);
          sharers = value > hero ? 0 : sharers + (value == hero ? 1 : 0);
        }
        if (sharers > 0) sum += 1.0 / sharers;
      }
      std::srand(5);
      EXPECT_EQ(logic_.getProbabilityOfWinHoldem6Plus(hand.data(), board.data(),
                                                      static_cast<int>(board.size()), players),
                sum / logic_.trialCount);
    }
  }
  Cards hand = CardsOf("JhJd");
  EXPECT_EQ(logic_.getProbabilityOfWinHoldem6Plus(hand.data(), nullptr, 6, 2), 0.0);
  EXPECT_EQ(logic_.getProbabilityOfWinHoldem6Plus(hand.data(), nullptr, 0, 11), 0.0);
}

TEST_F(ShortDeckSampling, RangesEndAtTheirFirstDeadHolding) {
  Cards hand = CardsOf("QhQd");
  Cards board = CardsOf("6c7c9cTcQs");
  int trials = 200;
  const auto ask = [&](std::vector<Spec> ranges, int known) {
    return getProbabilityOfWinHoldem6PlusCommon(hand.data(), board.data(), known, ranges.data(),
                                                static_cast<int>(ranges.size()), trials);
  };
  // In the order of the set; the hero's own queen ends the run.
  Spec range;
  for (const char* cards : {"7d6d", "9d9h", "QdAd", "Ks8c"}) {
    const Cards holding = CardsOf(cards);
    range.Insert(holding[0], holding[1]);
  }
  std::vector<std::pair<int, int>> order(range.combinations().begin(), range.combinations().end());
  ASSERT_EQ(order[2], std::pair(23, 25)) << "the dead holding is third";
  EXPECT_EQ(ask({range}, 5), 1.0) << "the last holding is not met";
  EXPECT_EQ(ask({ParseRange("Ks8c").range}, 5), 0.0) << "but would beat the hero";
  range.Insert(0, 12);  // a deuce: passed over
  EXPECT_EQ(ask({range}, 5), 1.0);
  const Spec flush = ParseRange("AcKc").range;
  EXPECT_EQ(ask({flush}, 5), 0.0);
  EXPECT_EQ(ask({flush, flush}, 5), 0.0) << "nobody can deal that";
  EXPECT_EQ(ask({Spec()}, 5), 0.0);
  EXPECT_EQ(ask({}, 5), 0.0);
  EXPECT_EQ(ask({range}, 6), 0.0);
  // Boards that take the opponent's only holding are dealt again.
  const double share = ask({flush, ParseRange("JJ").range}, 0);
  EXPECT_GT(share, 0.0);
  EXPECT_LT(share, 1.0);
  EXPECT_EQ(trials, 200);
  // A board that takes a holding counts for nobody, in whatever order the opponents are.
  const auto seeded = [&](std::vector<Spec> ranges) {
    std::srand(9);
    trials = 60000;
    return ask(ranges, 0);
  };
  const Spec many = ParseRange("random", {.short_deck = true}).range;
  Spec free;
  for (const auto& [first, second] : many.combinations()) {
    const bool met = first % 13 == 10 || second % 13 == 10 || first >= 50 || second >= 50;
    if (!met) free.Insert(first, second);
  }
  const Spec single = ParseRange("AsKs").range;
  EXPECT_NEAR(seeded({free, single}), seeded({single, free}), 0.015);
  trials = 200;
  // Much to choose from, and nothing for the last two.
  EXPECT_EQ(ask({free, free, free, free, free, single, single}, 0), 0.0);
  EXPECT_EQ(ask(std::vector<Spec>(
                    9, ParseRange("AA,KK,AK,AQ,AJ,AT,A9,A8,A7,A6,KQ,KJ,KT,K9,K8,K7,K6").range),
                0),
            0.0);
  // Nine opponents with an ace each: four aces are not enough.
  EXPECT_EQ(ask(std::vector<Spec>(9, ParseRange("AK,AQ,AJ,AT,A9,A8,A7,A6").range), 0), 0.0);
}

TEST_F(ShortDeckSampling, NothingLoadedGivesNothing) {
  delete[] fsm5.seven_cards;
  fsm5.seven_cards = nullptr;
  std::filesystem::remove(folder_ / "six-plus-7.bin");
  const std::filesystem::path here = std::filesystem::current_path();
  std::filesystem::current_path(folder_ / "");
  int messages = 0;
  SetMessageHandler([&messages](const CString&) { ++messages; });
  Cards hand = CardsOf("QhQd");
  Spec aces = ParseRange("AA").range;
  int trials = 10;
  EXPECT_EQ(logic_.getProbabilityOfWinHoldem6Plus(hand.data(), nullptr, 0, 2), 0.0);
  EXPECT_EQ(getProbabilityOfWinHoldem6PlusCommon(hand.data(), nullptr, 0, &aces, 1, trials), 0.0);
  EXPECT_EQ(messages, 2);
  SetMessageHandler({});
  std::filesystem::current_path(here);
}

}  // namespace
}  // namespace pokermath
