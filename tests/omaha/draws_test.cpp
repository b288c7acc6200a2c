// Nuts, outs and lows: golden figures, and every member against loops over cards and choices as one
// would write them first.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "pokermath/cards.h"
#include "pokermath/evaluators.h"
#include "pokermath/omaha.h"
#include "pokermath/poker_logic.h"
#include "pokermath/ranges.h"
#include "tests/cards/dealer.h"
#include "tests/golden_rows.h"

namespace pokermath {
namespace {

using Cards = std::vector<int>;

Cards CardsOf(const std::string& text) { return ParseCards(text).cards; }
int Count(const Cards& cards) { return static_cast<int>(cards.size()); }

Cards With(Cards cards, int card) {
  cards.push_back(card);
  return cards;
}
bool Holds(const Cards& cards, int card) { return std::ranges::count(cards, card) != 0; }

// A hand and a board, and the plain answers.
struct Situation {
  Cards hole, board;

  Cards Unseen() const {
    Cards unseen;
    for (int card = 0; card < 52; ++card) {
      if (!Holds(hole, card) && !Holds(board, card)) unseen.push_back(card);
    }
    return unseen;
  }
  Situation Next(int card) const { return {hole, With(board, card)}; }
  // Cards that play, as indexes.
  int Value(Cards cards, int* used = nullptr) const {
    int record[5];
    Cards on = board;
    return getCombinationOmahaFsm5Common(cards.data(), Count(cards), on.data(), Count(on),
                                         used != nullptr ? used : record);
  }
  int Value() const { return Value(hole); }
  int Category() const { return Get_rankFsm5(Value()); }
  int BetterPairs() const {
    const Cards unseen = Unseen();
    int better = 0;
    for (std::size_t i = 0; i < unseen.size(); ++i) {
      for (std::size_t j = i + 1; j < unseen.size(); ++j) {
        better += Value({unseen[i], unseen[j]}) > Value() ? 1 : 0;
      }
    }
    return better;
  }
};

Situation Random(Dealer& dealer, int hole, int board) {
  const Cards cards = dealer.Deal(hole + board);
  return {Cards(cards.begin(), cards.begin() + hole), Cards(cards.begin() + hole, cards.end())};
}

TEST(OmahaNuts, Golden) {
  const PokerLogic logic;
  const auto rows = GoldenRows("omaha_nuts.csv");
  ASSERT_EQ(rows.size(), 14u);
  for (const auto& row : rows) {
    Cards hole = CardsOf(row[0]), board = CardsOf(row[1]);
    const int size = Count(hole), n = Count(board);
    if (size == 4) {
      EXPECT_EQ(logic.IsMyHandNutsOmaha(hole.data(), board.data(), n), std::stoi(row[3])) << row[0];
    }
    EXPECT_EQ(logic.IsMyHandNutsOmahaCommon(hole.data(), size, board.data(), n), std::stoi(row[4]));
    EXPECT_EQ(IsMyHandNutsOmahaFsm5Common(hole.data(), size, board.data(), n), std::stoi(row[4]));
    EXPECT_EQ(IsMyHandNutsOmahaFsm5Common(hole.data(), size, board.data(), 2), -5);
    EXPECT_EQ(logic.IsMyHandNutsOmaha(hole.data(), board.data(), 6), -5);
  }
}

TEST(OmahaOuts, Golden) {
  const auto rows = GoldenRows("omaha_outs_fsm5.csv");
  ASSERT_EQ(rows.size(), 13u);
  for (const auto& row : rows) {
    Cards hole = CardsOf(row[0]), board = CardsOf(row[1]);
    int outs[11], nut_outs[11];
    EXPECT_EQ(getOutsOmahaFsm5Common(hole.data(), Count(hole), board.data(), Count(board), outs,
                                     nut_outs),
              1);
    const PokerLogic logic;
    int other_outs[11] = {}, other_nut_outs[11] = {};  // the last one stays as it is
    other_outs[10] = other_nut_outs[10] = 77;
    EXPECT_EQ(logic.getOutsOmahaCommon(hole.data(), Count(hole), board.data(), Count(board),
                                       other_outs, other_nut_outs),
              1);
    EXPECT_TRUE(std::equal(other_outs, other_outs + 10, outs));
    EXPECT_TRUE(std::equal(other_nut_outs, other_nut_outs + 10, nut_outs));
    EXPECT_EQ(other_outs[10] + other_nut_outs[10], 154);
    for (const auto& [text, found] : {std::pair(row[3], outs), {row[4], nut_outs}}) {
      std::istringstream numbers(text);
      for (int category = 0; category < 11; ++category) {
        int golden = -1;
        numbers >> golden;
        EXPECT_EQ(found[category], golden) << row[0] << " " << row[1] << " " << category;
      }
    }
  }
}

TEST(OmahaOuts, ARoyalFlushIsACategoryOfItsOwnInOneFamily) {
  const PokerLogic logic;
  for (const bool straight_flush : {false, true}) {
    Cards hole = CardsOf("KhQh2c3d"), board = CardsOf(straight_flush ? "JhTh9h" : "JhTh2s");
    int outs[11] = {}, nut_outs[11] = {};
    outs[10] = nut_outs[10] = 77;
    logic.getOutsOmahaCommon(hole.data(), 4, board.data(), 3, outs, nut_outs);
    // The ace and the nine of hearts; none from a straight flush, which is category 9 already.
    EXPECT_EQ(outs[9], straight_flush ? 0 : 2);
    EXPECT_EQ(outs[10] + nut_outs[10], 154);
    getOutsOmahaFsm5Common(hole.data(), 4, board.data(), 3, outs, nut_outs);
    EXPECT_EQ(outs[9], straight_flush ? 0 : 1);
    EXPECT_EQ(outs[10] * 10 + nut_outs[10], 11);
  }
}

TEST(OmahaNuts, AllNutsOfABoard) {
  Dealer dealer(91);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 12; ++trial) {
    Situation now = Random(dealer, 4 + trial % 3, 3 + trial / 2 % 2);
    const Cards unseen = now.Unseen();
    int best = -1;
    Spec nuts;
    for (const bool collect : {false, true}) {
      for (std::size_t i = 0; i < unseen.size(); ++i) {
        for (std::size_t j = i + 1; j < unseen.size(); ++j) {
          const int value = now.Value({unseen[i], unseen[j]});
          if (!collect) best = std::max(best, value);
          if (collect && value == best) nuts.AddCard(unseen[i], unseen[j]);
        }
      }
    }
    int outs[2] = {};
    for (const int card : unseen) {
      const Situation then = now.Next(card);
      if (then.Value() < best) continue;
      ++outs[0];
      outs[1] += then.BetterPairs() == 0 ? 1 : 0;
    }
    Spec found;
    found.AddCard(0, 1);  // goes
    int found_outs[2];
    EXPECT_EQ(FindAllNuts(now.hole.data(), Count(now.hole), now.board.data(), Count(now.board),
                          found, found_outs),
              static_cast<int>(nuts.combinations().size()));
    EXPECT_EQ(found.combinations(), nuts.combinations());
    EXPECT_EQ(std::pair(found_outs[0], found_outs[1]), std::pair(outs[0], outs[1]))
        << CardNames(now.hole) << " on " << CardNames(now.board);
    EXPECT_EQ(IsMyHandNutsOmahaFsm5Common(now.hole.data(), Count(now.hole), now.board.data(),
                                          Count(now.board)),
              now.BetterPairs());
    EXPECT_EQ(FindAllNuts(now.hole.data(), 4, now.board.data(), 5, found, found_outs), 0);
    EXPECT_EQ(found.combinations(), nuts.combinations()) << "left as it was";
  }
}

TEST(OmahaOuts, ByKind) {
  const PokerLogic logic;
  Dealer dealer(92);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 24; ++trial) {
    Situation now = Random(dealer, 4, 3 + trial % 2);
    SCOPED_TRACE(CardNames(now.hole) + " on " + CardNames(now.board));
    const int n = Count(now.board);
    CHandOmahaType hand(now.hole.data(), now.board.data(), n);
    int suits[4], draws;
    const bool draws_flush = hand.isFlushDrawOmaha(suits, draws) > 0;
    const int category = now.Category();
    const bool fills_up = category >= 3 && category <= 6;
    int flushes = 0, straight_flushes = 0, straights = 0, full_houses = 0, quads = 0;
    int outs[10] = {}, nut_outs[10] = {};
    for (const int card : now.Unseen()) {
      const Situation then = now.Next(card);
      const int next = std::min(then.Category(), 9);
      const int out = then.BetterPairs() == 0 ? 101 : 1;
      if (draws_flush && next == 6) flushes += out;
      if (draws_flush && next == 9) straight_flushes += out;
      if (category != 5 && next == 5) straights += out;
      if (fills_up && next == 7) full_houses += out;
      if (fills_up && next == 8) quads += out;
      if (next > std::min(category, 9)) {
        ++outs[next];
        nut_outs[next] += out / 100;
      }
    }
    int found = -1, other = -1;
    EXPECT_EQ(logic.GetFlushDrawOutsOmaha(hand, found, other), draws);
    EXPECT_EQ(std::pair(found, other), std::pair(flushes, straight_flushes));
    EXPECT_EQ(logic.GetStraightDrawOutsOmaha(now.hole.data(), now.board.data(), n, found),
              category == 5 ? 5 : 1);
    EXPECT_EQ(found, straights);
    EXPECT_EQ(logic.GetFullHouseOutsOmaha(now.hole.data(), now.board.data(), n, found, other),
              fills_up ? 1 : 7);
    EXPECT_EQ(std::pair(found, other), std::pair(full_houses, quads));
    int found_outs[10], found_nut_outs[10];
    logic.getOutsOmahaCommon(now.hole.data(), 4, now.board.data(), n, found_outs, found_nut_outs);
    EXPECT_TRUE(std::ranges::equal(found_outs, outs));
    EXPECT_TRUE(std::ranges::equal(found_nut_outs, nut_outs));
  }
  Situation river = {CardsOf("AhKhQsJs"), CardsOf("Th9h2h3c4d")};
  int a = 7, b = 7;
  CHandOmahaType hand(river.hole.data(), river.board.data(), 5);
  EXPECT_EQ(logic.GetFlushDrawOutsOmaha(hand, a, b), -5);
  EXPECT_EQ(logic.GetStraightDrawOutsOmaha(river.hole.data(), river.board.data(), 5, a), -5);
  EXPECT_EQ(logic.GetFullHouseOutsOmaha(river.hole.data(), river.board.data(), 5, a, b), -5);
  EXPECT_EQ(getOutsOmahaFsm5CommonTwoPairs(river.hole.data(), 4, river.board.data(), 5, a), -5);
  // A flop with two hearts: nine flushes.
  Cards hole = CardsOf("AhKhQsJs"), flop = CardsOf("Th9h2c");
  CHandOmahaType draw(hole.data(), flop.data(), 3);
  EXPECT_EQ(logic.GetFlushDrawOutsOmaha(draw, a, b), 1);
  EXPECT_EQ(a % 100 + b % 100, 9);
}

TEST(OmahaOuts, TwoPairsAndStraights) {
  Dealer dealer(93);
  SCOPED_TRACE(dealer.Trace());
  const auto ranks_of = [](int card1, int card2) {
    return std::pair(std::max(card1 % 13, card2 % 13), std::min(card1 % 13, card2 % 13));
  };
  int outs_of_many = 0;
  for (int trial = 0; trial < 120; ++trial) {
    Situation now = Random(dealer, 4 + trial % 7, 3 + trial / 2 % 3);
    SCOPED_TRACE(CardNames(now.hole) + " on " + CardNames(now.board));
    const int size = Count(now.hole), n = Count(now.board);

    int counts[2], plain[2] = {};
    std::set<std::pair<int, int>> straights, held, plain_straights, plain_held;
    for (int i = 0; i < 51; ++i) {
      for (int j = i + 1; j < 52; ++j) {
        if (Holds(now.board, i) || Holds(now.board, j)) continue;
        if (Get_rankFsm5(now.Value({i, j})) != 5) continue;
        ++plain[0];
        plain[1] += Holds(now.hole, i) || Holds(now.hole, j) ? 0 : 1;
        const auto [high, low] = ranks_of(i, j);
        plain_straights.insert(high == 12 && low < 7 ? std::pair(low, high) : std::pair(high, low));
      }
    }
    for (const auto& ranks : plain_straights) {
      for (const int card : now.hole) {
        const bool has = card % 13 == ranks.first || card % 13 == ranks.second;
        if (has && plain[1] > 0) plain_held.insert(ranks);
      }
    }
    held.insert({1, 1});
    EXPECT_EQ(TestStraight(now.hole.data(), size, now.board.data(), n, counts, straights, held),
              plain[0]);
    EXPECT_EQ(std::pair(counts[0], counts[1]), std::pair(plain[0], plain[1]));
    EXPECT_EQ(straights, plain_straights);
    EXPECT_EQ(held, plain_held);

    if (n == 5) continue;
    int found = -1, outs = 0, used[5];
    const auto paired = [](const Cards& cards) {
      std::set<int> ranks;
      for (const int card : cards) ranks.insert(card % 13);
      return ranks.size() < cards.size();
    };
    std::pair<int, int> own = {-1, -1};
    const int category = Get_rankFsm5(now.Value(now.hole, used));
    const auto hole = [&](int i) { return now.hole[static_cast<std::size_t>(used[i])]; };
    if (category == 3) own = ranks_of(hole(0), hole(1));
    for (const int card : now.Unseen()) {
      const Situation then = now.Next(card);
      if (paired(then.board) || category > 3) continue;
      if (Get_rankFsm5(then.Value(now.hole, used)) != 3) continue;
      const auto pair = ranks_of(hole(0), hole(1));
      outs += pair.first != pair.second && pair != own ? 1 : 0;
    }
    EXPECT_EQ(getOutsOmahaFsm5CommonTwoPairs(now.hole.data(), size, now.board.data(), n, found),
              outs);
    EXPECT_EQ(found, outs);
    outs_of_many += size >= 9 ? outs : 0;
  }
  EXPECT_GT(outs_of_many, 0) << "nine hole cards and more";
  for (const int n : {2, 6}) {
    Cards hole = CardsOf("AhKhQsJs"), board = CardsOf("2c3d4h5s6c7d");
    int counts[2] = {7, 7};
    std::set<std::pair<int, int>> straights = {{1, 1}}, held = {{1, 1}};
    EXPECT_EQ(TestStraight(hole.data(), 4, board.data(), n, counts, straights, held), 0);
    EXPECT_EQ(counts[0] + counts[1], 0);
    EXPECT_TRUE(straights.empty() && held.empty());
  }
  // On a board where a wheel is one of the straights.
  Cards hole = CardsOf("AhKhQsJs"), board = CardsOf("2c3d4h");
  int counts[2];
  std::set<std::pair<int, int>> straights, held;
  TestStraight(hole.data(), 4, board.data(), 3, counts, straights, held);
  EXPECT_EQ(straights, (std::set<std::pair<int, int>>{{3, 12}, {4, 3}}));
  EXPECT_EQ(held, (std::set<std::pair<int, int>>{{3, 12}}));

  const PokerLogic logic;
  const auto flush_draw = [&](const char* hand, const char* cards) {
    Cards two = CardsOf(hand), on = CardsOf(cards);
    return logic.isFlushDraw(two.data(), on.data(), Count(on));
  };
  EXPECT_EQ(flush_draw("AhKh", "2h3h"), 0) << "no flop";
  EXPECT_EQ(flush_draw("AhKh", "2h3c4d"), -1);
  EXPECT_EQ(flush_draw("Ah9h", "2h3h4d"), 12);
  EXPECT_EQ(flush_draw("AcKd", "2h3h4h5h"), 0);
  EXPECT_EQ(flush_draw("Ah9h", "2h3h4h"), 12) << "made already";
}

// The low by every choice of two and three.
int PlainLow(const Cards& hole, const Cards& board) {
  int best = 0;
  const auto low_rank = [](int card) { return card % 13 == 12 ? 1 : card % 13 + 2; };
  for (std::size_t i = 0; i < hole.size(); ++i)
    for (std::size_t j = i + 1; j < hole.size(); ++j)
      for (std::size_t a = 0; a < board.size(); ++a)
        for (std::size_t b = a + 1; b < board.size(); ++b)
          for (std::size_t c = b + 1; c < board.size(); ++c) {
            int ranks[5] = {low_rank(hole[i]), low_rank(hole[j]), low_rank(board[a]),
                            low_rank(board[b]), low_rank(board[c])};
            std::ranges::sort(ranks);
            if (ranks[4] > 8 || std::ranges::adjacent_find(ranks) != std::end(ranks)) continue;
            int value = 0;
            for (int k = 4; k >= 0; --k) value = value * 10 + ranks[k];
            if (best == 0 || value < best) best = value;
          }
  return best;
}

TEST(OmahaLow, ValuesNutsAndOuts) {
  PokerLogic logic;
  Dealer dealer(94);
  SCOPED_TRACE(dealer.Trace());
  for (int trial = 0; trial < 60; ++trial) {
    Situation now = Random(dealer, 4 + trial % 3, 3 + trial / 3 % 3);
    SCOPED_TRACE(CardNames(now.hole) + " on " + CardNames(now.board));
    const int size = Count(now.hole), n = Count(now.board);
    const int low = PlainLow(now.hole, now.board);
    EXPECT_EQ(logic.SetLowValueCombinationOmahaCommon(now.hole.data(), size, now.board.data(), n),
              low);
    const auto better = [](const Situation& on) {
      const int own = PlainLow(on.hole, on.board);
      const Cards unseen = on.Unseen();
      int count = 0;
      for (std::size_t i = 0; i < unseen.size(); ++i) {
        for (std::size_t j = i + 1; j < unseen.size(); ++j) {
          const int other = PlainLow({unseen[i], unseen[j]}, on.board);
          count += other != 0 && other < own ? 1 : 0;
        }
      }
      return own == 0 ? 1 : count;
    };
    EXPECT_EQ(logic.IsMyHandNutsOmahaLow(now.hole.data(), size, now.board.data(), n), better(now));
    if (size == 4) {
      CDeck deck;
      for (const Cards& cards : {now.hole, now.board}) {
        for (const int card : cards) deck.AddCard(CCard(card));
      }
      deck.SetLowValueCombinationOmaha(logic);
      EXPECT_EQ(deck.extra, low);
      deck.cards[static_cast<std::size_t>(low) % deck.cards.size()] = CCard(clubs, 0);
      deck.SetLowValueCombinationOmaha(logic);
      EXPECT_EQ(deck.extra, 0) << "a card that is none";
    }
    int outs = -1, nut_outs = -1, plain_outs = 0, plain_nut_outs = 0;
    if (n == 5) {
      EXPECT_EQ(logic.getOutsOmahaLow(now.hole.data(), size, now.board.data(), n, outs, nut_outs),
                -5);
      EXPECT_EQ(std::pair(outs, nut_outs), std::pair(-1, -1)) << "nothing is written";
      EXPECT_EQ(logic.IsMyHandNutsOmahaLow(now.hole.data(), size, now.board.data(), 2), -5);
      EXPECT_EQ(logic.IsMyHandNutsOmahaLow(now.hole.data(), size, now.board.data(), 6), -5);
      continue;
    }
    for (const int card : now.Unseen()) {
      const Situation then = now.Next(card);
      if (PlainLow(then.hole, then.board) == 0) continue;
      plain_outs += low == 0 ? 1 : 0;
      plain_nut_outs += better(then) == 0 ? 1 : 0;
    }
    EXPECT_EQ(logic.getOutsOmahaLow(now.hole.data(), size, now.board.data(), n, outs, nut_outs), 1);
    EXPECT_EQ(std::pair(outs, nut_outs), std::pair(plain_outs, plain_nut_outs));
  }
}

TEST(OmahaLow, Summary) {
  const PokerLogic logic;
  struct Case {
    const char *hole, *board;
    int code, first;
  };
  for (const auto& [hole, board, code, first] :
       {Case{"Ah2hKdKc", "KsQsJs", 0, -1}, Case{"Ah2hKdKc", "3sQsJsTd", 0, -1},
        Case{"Ah2hKdKc", "3s4sJsTdKh", 0, -1}, Case{"KhKdQhQd", "3s4s5c", 1, -1},
        Case{"Ah2hKdKc", "3s4s5cKsQs", 2, 54321}, Case{"Ah2hKdKc", "3s4sKs", 3, 16},
        Case{"Ah2hKdKc", "As2s3c", 100, 0}, Case{"AhAcKdQc", "2s3s4cKsQs", 1, -1}}) {
    Cards hand = CardsOf(hole), on = CardsOf(board);
    int value = -1, nut_outs = -1;
    double probability = -1;
    EXPECT_EQ(
        logic.CountLowCards(hand.data(), 4, on.data(), Count(on), value, nut_outs, probability),
        code)
        << hole << " " << board;
    EXPECT_EQ(value, first);
    if (code == 3) {
      EXPECT_EQ(nut_outs, 16) << "five to eight";
      EXPECT_DOUBLE_EQ(probability, 16.0 / 45);
    } else {
      EXPECT_EQ(probability, -1);
    }
  }
}

// Five cards: 15 of 16 cards low enough, 44 unseen.
TEST(OmahaLow, SummaryOfFiveCards) {
  const PokerLogic logic;
  Cards hand = CardsOf("Ah2hKdKcQs"), board = CardsOf("3s4sKs");
  int outs = -1, nut_outs = -1;
  double probability = -1;
  EXPECT_EQ(logic.CountLowCards(hand.data(), 5, board.data(), 3, outs, nut_outs, probability), 3);
  EXPECT_EQ(outs, 16);
  EXPECT_DOUBLE_EQ(probability, 16.0 / 44);
}

// The two counts again, rank by rank and step by step.
struct PlainPoints {
  explicit PlainPoints(const int* hand) {
    for (int i = 0; i < 4; ++i) {
      ++ranks[hand[i] % 13];
      ++suits[hand[i] / 13];
      top[hand[i] / 13] = std::max(top[hand[i] / 13], hand[i] % 13);
    }
    for (int rank = 0; rank < 13; ++rank) {
      if (ranks[rank] > 0) d.push_back(rank);
    }
  }

  static int Straight(const std::vector<int>& of) {
    const int span = of.back() - of.front();
    int points = 0;
    if (of.size() == 4 && span <= 6) points = 25 - 2 * (span - 3);
    if (of.size() == 3 && span <= 5) points = 18 - 2 * (span - 2);
    if (of.size() == 2 && span <= 4) points = 8 - 2 * (span - 1);
    if (points > 0 && of.back() == 12) points = std::max(0, points - 4);
    return points;
  }
  int StraightPoints() const {
    const auto part = [this](std::size_t from, std::size_t count) {
      const auto begin = d.begin() + static_cast<std::ptrdiff_t>(from);
      return Straight({begin, begin + static_cast<std::ptrdiff_t>(count)});
    };
    if (d.size() == 1) return 0;
    if (Straight(d) > 0 || d.size() == 2) return Straight(d);
    if (d.size() == 3) return part(0, 2) + part(1, 2);
    const int gaps[3] = {d[1] - d[0] - 1, d[2] - d[1] - 1, d[3] - d[2] - 1};
    const bool upper = gaps[1] + gaps[2] < 4;
    const bool lower = gaps[0] + gaps[1] < 4;
    if (upper && lower) return part(1, 3) + part(0, 3);
    if (lower) return part(0, 3) + part(2, 2);
    if (upper) return part(1, 3) + part(0, 2);
    return part(0, 2) + part(1, 2) + part(2, 2);
  }
  int High() const {
    int points = 0;
    for (int suit = 0; suit < 4; ++suit) {
      const int rank = top[suit];
      if (suits[suit] == 2) {
        points += rank == 12   ? 8
                  : rank == 11 ? 6
                  : rank == 10 ? 5
                  : rank == 9  ? 4
                  : rank >= 7  ? 3
                  : rank == 6  ? 2
                               : 1;
      }
      if (suits[suit] > 2) points -= 2;
      points = std::max(points, 0);
    }
    for (int rank = 0; rank < 13; ++rank) {
      if (ranks[rank] != 2) continue;
      points += rank == 12   ? 18
                : rank == 11 ? 16
                : rank >= 7  ? 10 + (rank > 7) * 2 + (rank > 8) + (rank > 9)
                : rank == 6  ? 8
                             : 7;
    }
    const int wheel = (ranks[0] > 0) + (ranks[1] > 0) + (ranks[2] > 0) + (ranks[3] > 0);
    if (ranks[12] > 0) points += wheel == 1 ? 6 : wheel == 2 ? 12 : 0;
    return points + StraightPoints();
  }
  double HighLow() const {
    int pairs = 0, suited = 0;
    bool trips = false;
    for (const int count : ranks) {
      pairs += count == 2 ? 1 : 0;
      trips = trips || count >= 3;
    }
    for (const int count : suits) suited += count == 2 ? 1 : 0;
    if (d[0] >= 8) {
      if (trips) return 0.0;
      return pairs == 2 || (pairs == 1 && suited > 0) || suited == 2 ? 1000.0 : 0.0;
    }
    double points = 0;
    const bool ace = ranks[12] > 0;
    if (ace) points += d[0] == 0 ? 20 : d[0] == 1 ? 17 : d[0] == 2 ? 13 : d[0] == 5 ? 10 : 0;
    if (!ace && d.size() > 1) {
      const int two = d[0] * 10 + d[1];
      points += two == 1 ? 15 : two == 2 ? 12 : two == 12 ? 11 : two == 23 ? 8 : 0;
    }
    if (d.size() >= 3) {
      const std::size_t from = ace ? 1 : 2;
      for (std::size_t i = from; i <= from + (d.size() == 4 ? 1 : 0); ++i) {
        const int rank = d[i];
        points += rank == 1                 ? 9
                  : rank == 2               ? 6
                  : rank == 3               ? 4
                  : rank >= 9 && rank <= 11 ? 2
                  : rank == 4 || rank == 8  ? 1
                                            : 0;
      }
    }
    for (int rank = 0; rank < 13; ++rank) {
      const double pair = rank == 0    ? 3
                          : rank <= 2  ? 1
                          : rank <= 7  ? 0
                          : rank == 8  ? 1
                          : rank == 9  ? 2
                          : rank == 10 ? 5
                          : rank == 11 ? 6
                                       : 8;
      points += ranks[rank] == 2 ? pair : ranks[rank] == 3 ? pair / 2 : 0;
    }
    for (int suit = 0; suit < 4; ++suit) {
      const int rank = top[suit];
      const double two = rank == 12 ? 4 : rank == 11 ? 3 : rank >= 9 ? 2 : rank >= 6 ? 1 : 0;
      points += suits[suit] == 2 ? two : suits[suit] == 3 ? two / 2 : 0;
    }
    return points;
  }

  int ranks[13] = {}, suits[4] = {}, top[4] = {};
  std::vector<int> d;
};

TEST(OmahaPoints, OfAllHands) {
  int hand[4];
  int wrong = 0;
  for (hand[0] = 0; hand[0] < 49; ++hand[0])
    for (hand[1] = hand[0] + 1; hand[1] < 50; ++hand[1])
      for (hand[2] = hand[1] + 1; hand[2] < 51; ++hand[2])
        for (hand[3] = hand[2] + 1; hand[3] < 52; ++hand[3]) {
          const PlainPoints plain(hand);
          wrong += HutchisonPointsOmaha(hand) != plain.High() ? 1 : 0;
          wrong += HutchisonPointsOmahaHL(hand) != plain.HighLow() ? 1 : 0;
          ASSERT_EQ(wrong, 0) << CardNames(hand);
        }
}

TEST(OmahaPoints, OfStartingHands) {
  struct Case {
    const char* hand;
    int points;
    double high_low;
  };
  for (const auto& [text, points, high_low] :
       {Case{"AhKhAcKc", 54, 1000.0}, Case{"JhTc9d8s", 25, 3.0}, Case{"2h5h8hJh", 12, 2.0},
        Case{"Ah2c3dKs", 24, 31.0}, Case{"KhQhKcQc", 30 + 6 + 6 + 8, 1000.0},
        Case{"KhKdQcJs", 16 + 18, 0.0}, Case{"Ah2c3d4s", 18, 35.0}, Case{"AhAcAdAs", 0, 0.0},
        Case{"2h2c2d3h", 1 + 8, 15 + 1.5}, Case{"7h7c7d2h", 1, 0.0},
        Case{"Ah9hKh5h", 8 + 2 + 6, 2.0}, Case{"5h4h3c2c", 1 + 1 + 25, 15 + 6 + 4}}) {
    Cards hand = CardsOf(text);
    EXPECT_EQ(HutchisonPointsOmaha(hand.data()), points) << text;
    EXPECT_EQ(HutchisonPointsOmahaHL(hand.data()), high_low) << text;
  }
}

}  // namespace
}  // namespace pokermath
