#include "pokermath/calculator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <numeric>
#include <random>

#include "calculator/choices.h"
#include "calculator/dealing.h"
#include "calculator/one_hand.h"
#include "calculator/solvers.h"
#include "calculator/suit_symmetry.h"
#include "eval/worth.h"
#include "kernels/several_hands.h"
#include "kernels/sharers.h"
#include "kernels/three_way_table.h"
#include "tests/calculator/random_question.h"
#include "tests/eval/oracle.h"

namespace pokermath {
namespace {

CardSet Cards(std::string_view text) { return CardSet(ParseCards(text).cards); }
HandRange Hand(std::string_view text, Game game = Game::kHoldem) {
  return HandRange::Of(game, Cards(text));
}
HandRange Holdings(std::string_view text, Game game = Game::kHoldem) {
  return HandRange(game, ParseRange(text).range);
}

std::vector<WeightedHand> ListOf(const HandRange& range) {
  return {range.hands().begin(), range.hands().end()};
}

// Plain enumeration of a question, whatever is faster.
Result<EquityAnswer> CountPlainly(const EquityQuestion& question) {
  Result<CheckedQuestion> checked = Check(question);
  if (!checked) return checked.error();
  const auto shared = std::make_shared<const CheckedQuestion>(*std::move(checked));
  const Calculation plain(shared, StartPlain(shared), "");
  Sums sums = plain.NewSums();
  plain.Do(0, plain.steps(), sums);
  return plain.Answer(sums);
}

// --- the gate ---

struct BadQuestion {
  const char* what;
  EquityQuestion question;
  ErrorCode code;
  int player;
  const char* card;  // "" for none
  const char* text;
};

TEST(Gate, SaysWhatIsWrongWithAQuestion) {
  const HandRange ak = Hand("AhKd"), sevens = Hand("7s7c"), every = HandRange::Every(Game::kHoldem);
  const HandRange pairs = Holdings("AA,KK");
  const CardSet flop = Cards("2c3d4h");
  std::vector<HandRange> eleven(11, every);
  const BadQuestion kBad[] = {
      {"one player", {.players = {ak}}, ErrorCode::kPlayers, -1, "", "1 player: expected 2 to 10"},
      {"eleven", {.players = eleven}, ErrorCode::kPlayers, -1, "", "11 players"},
      {"Omaha hand",
       {.players = {ak, Hand("AsKsQsJs", Game::kOmaha)}},
       ErrorCode::kGame,
       1,
       "",
       "player 2: a range of Omaha"},
      {"three cards",
       {.players = {Hand("AhKdQc"), ak}},
       ErrorCode::kHand,
       0,
       "",
       "player 1: a hand of 3 different cards (AhKdQc): expected 2"},
      {"no hands",
       {.players = {ak, HandRange(Game::kHoldem)}},
       ErrorCode::kHand,
       1,
       "",
       "player 2: an empty range"},
      {"weight",
       {.players = {ak, HandRange(Game::kHoldem, {{Cards("7s7c"), 10001}})}},
       ErrorCode::kHand,
       1,
       "",
       "7s7c weighs 10001"},
      {"card of two",
       {.players = {ak, Hand("Ah7c")}},
       ErrorCode::kCard,
       1,
       "Ah",
       "player 2: Ah is in the hand of player 1 already"},
      {"on the board",
       {.players = {ak, sevens}, .board = Cards("7c3d4h")},
       ErrorCode::kCard,
       1,
       "7c",
       "player 2: 7c is on the board already"},
      {"dead",
       {.players = {ak, sevens}, .dead = Cards("7c")},
       ErrorCode::kCard,
       1,
       "7c",
       "player 2: 7c is a dead card"},
      {"board and dead",
       {.players = {ak, sevens}, .board = flop, .dead = Cards("4h")},
       ErrorCode::kCard,
       -1,
       "4h",
       "4h is on the board and dead"},
      {"board behind the street",
       {.players = {ak, sevens}, .board = Cards("2c3d4h5s"), .street = Street::kFlop},
       ErrorCode::kBoard,
       -1,
       "",
       "a board of 4 cards: expected 3"},
      {"nothing comes",
       {.players = {ak, sevens}, .board = flop, .street = Street::kFlop, .detail = {.next = true}},
       ErrorCode::kBoard,
       -1,
       "",
       "nothing comes next"},
      {"short deck",
       {.game = Game::kShortDeck, .players = {Hand("Ah5d", Game::kShortDeck), sevens}},
       ErrorCode::kCard,
       0,
       "5d",
       "player 1: 5d is not in the short deck"},
      {"blocked range",
       {.players = {Hand("AhKd"), Holdings("AKs")}, .dead = Cards("AsAcAdKh")},
       ErrorCode::kBlocked,
       1,
       "",
       "player 2: no combination of the range is left"},
      {"folded",
       {.players = {ak, sevens}, .folded = {Hand("7sAc")}},
       ErrorCode::kCard,
       -1,
       "7s",
       "folded player 1: 7s is in the hand of player 2 already"},
      {"three times aces",
       {.players = {Holdings("AA"), Holdings("AA"), Holdings("AA")}},
       ErrorCode::kBlocked,
       -1,
       "",
       "the ranges leave no deal"},
      {"too many cards",
       {.game = Game::kOmaha5,
        .players = std::vector<HandRange>(10, HandRange::Every(Game::kOmaha5))},
       ErrorCode::kBlocked,
       -1,
       "",
       "55 cards are needed"},
      {"too many hands in detail",
       {.game = Game::kOmaha5,
        .players = std::vector<HandRange>(4, HandRange::Every(Game::kOmaha5)),
        .detail = {.hands = true}},
       ErrorCode::kLimit,
       -1,
       "",
       "details of 10395840 hands: expected 10000000"},
      {"no end",
       {.players = {ak, pairs}, .sampling = {.standard_error = 0}},
       ErrorCode::kLimit,
       -1,
       "",
       "sampling has no end"},
      {"no number",
       {.players = {ak, pairs}, .exact_budget = std::nan("")},
       ErrorCode::kLimit,
       -1,
       "",
       "the budget"},
      {"no card",
       {.players = {ak, pairs}, .dead = CardSet::OfBits(std::uint64_t{1} << 60)},
       ErrorCode::kCard,
       -1,
       "",
       "card code 60: expected 0 to 51"},
      {"no street",
       {.players = {ak, pairs}, .street = static_cast<Street>(2)},
       ErrorCode::kBoard,
       -1,
       "",
       "the street is"},
      {"no game",
       {.game = static_cast<Game>(99), .players = {ak, pairs}},
       ErrorCode::kGame,
       -1,
       "",
       "a game of an unknown number"},
      {"no room",
       {.players = std::vector<HandRange>(10, Holdings("AK,AQ,KQ"))},
       ErrorCode::kBlocked,
       -1,
       "",
       "the ranges leave no deal"},
  };
  for (const BadQuestion& bad : kBad) {
    SCOPED_TRACE(bad.what);
    const Result<Calculation> plan = Plan(bad.question);
    ASSERT_FALSE(plan);
    EXPECT_EQ(plan.error().code, bad.code);
    EXPECT_EQ(plan.error().player, bad.player);
    if (bad.code != ErrorCode::kCard || *bad.card != 0) {
      EXPECT_EQ(plan.error().card, *bad.card == 0 ? -1 : *Cards(bad.card).begin());
    }
    EXPECT_NE(plan.error().text.find(bad.text), std::string::npos) << plan.error().text;
  }
}

// --- values ---

TEST(Worth, OfShortDecksFollowsTheirRules) {
  // Categories of the oracle (9 straight flush .. 1 high card) in each game's own order.
  constexpr int kPlain[] = {0, 1, 2, 3, 5, 4, 7, 6, 8, 9},
                kStraights[] = {0, 1, 2, 3, 4, 5, 7, 6, 8, 9};
  for (const Game game : {Game::kShortDeck, Game::kShortDeckStraights}) {
    const GameRules& rules = RulesOf(game);
    const int(&order)[10] = game == Game::kShortDeck ? kPlain : kStraights;
    const auto strength = [&](const int(&five)[5]) {
      // The ace is low in A-6-7-8-9 as it is in A-2-3-4-5: four ranks lower, the rules are the
      // same.
      int lower[5];
      for (int i = 0; i < 5; ++i) lower[i] = five[i] % 13 == 12 ? five[i] : five[i] - 4;
      int value = oracle::Strength(lower);
      // Ten to ace has its ranks apart then: 6 7 8 9 of the deck of 52 and the ace.
      bool broadway = true;
      for (const int card : five) broadway = broadway && card % 13 >= 8;
      unsigned ranks = 0;
      for (const int card : five) ranks |= 1u << card % 13;
      if (broadway && ranks == 0x1F00) {
        value = (value >> 20 == 6 ? 9 : 5) << 20 | 12 << 16;
      }
      return order[value >> 20] << 20 | (value & 0xFFFFF);
    };
    std::mt19937 random(11);
    const CardSet deck_set = rules.Deck();
    std::vector<int> deck(deck_set.begin(), deck_set.end());
    const auto draw = [&] {
      std::shuffle(deck.begin(), deck.end(), random);
      return deck;
    };
    std::map<int, int> by_strength;  // strength to value
    for (int i = 0; i < 40000; ++i) {
      const std::vector<int> cards = draw();
      const auto size = static_cast<std::size_t>(5 + i % 3);
      const auto hand = std::span(cards).first(2), board = std::span(cards).subspan(2, size - 2);
      const int best = oracle::BestStrength(std::span(cards).first(size), strength);
      const int value = WorthOf(rules, hand, board).high;
      const auto [known, is_new] = by_strength.emplace(best, value);
      ASSERT_EQ(known->second, value) << rules.name << " " << i;
      ASSERT_EQ(CategoryOf(rules, value) == 10 ? 9 : CategoryOf(rules, value), best >> 20);
    }
    int last = 0;
    for (const auto& [strength_of, value] : by_strength) {
      ASSERT_GT(value, last);
      last = value;
    }
    EXPECT_GT(by_strength.size(), 1000u);
  }
}

// --- counting ---

// Every deal by itself: all hands of all players, then all boards. In shares of 5,040.
struct BruteForce {
  explicit BruteForce(const EquityQuestion& of_question) : question(of_question) {
    wins.resize(question.players.size());
    points = low_points = wins;
    Deal(0, question.board | question.dead, 1);
  }

  void Deal(std::size_t seat, CardSet taken, double weight) {
    const std::size_t players = question.players.size();
    if (seat == players + question.folded.size()) {
      return Board(question.board, taken, 51, weight);
    }
    const HandRange& range =
        seat < players ? question.players[seat] : question.folded[seat - players];
    for (const WeightedHand& hand : range.hands()) {
      if (hand.cards.Meets(taken)) continue;
      if (seat < players) hands[seat] = hand.cards;
      Deal(seat + 1, taken | hand.cards, weight * hand.weight / kWholeWeight);
    }
  }

  void Board(CardSet board, CardSet taken, int highest, double weight) {
    if (board.size() == static_cast<int>(question.street)) return Settle(board, weight);
    for (int card = highest; card >= 0; --card) {
      if (taken.Contains(card) || !RulesOf(question.game).Deck().Contains(card)) continue;
      Board(board | CardSet{card}, taken, card - 1, weight);
    }
  }

  void Settle(CardSet board, double weight) {
    const GameRules& rules = RulesOf(question.game);
    const std::vector<int> board_cards(board.begin(), board.end());
    std::vector<Worth> worths;
    for (std::size_t i = 0; i < wins.size(); ++i) {
      const std::vector<int> hand(hands[i].begin(), hands[i].end());
      worths.push_back(WorthOf(rules, hand, board_cards));
    }
    const auto count = [&](int Worth::*value) {
      int best = 0;
      for (const Worth& worth : worths) best = std::max(best, worth.*value);
      return std::pair(best, std::ranges::count(worths, best, value));
    };
    const auto [high, highs] = count(&Worth::high);
    const auto [low, lows] = count(&Worth::low);
    cases += weight;
    for (std::size_t i = 0; i < wins.size(); ++i) {
      const double of_low = low > 0 && worths[i].low == low ? 0.5 / static_cast<double>(lows) : 0;
      const double of_high =
          worths[i].high == high ? (low > 0 ? 0.5 : 1.0) / static_cast<double>(highs) : 0;
      points[i] += weight * (of_high + of_low);
      low_points[i] += weight * of_low;
      if (of_high + of_low > 0.9999) wins[i] += weight;
    }
  }

  const EquityQuestion& question;
  CardSet hands[kMostPlayers];
  double cases = 0;
  std::vector<double> wins, points, low_points;
};

void ExpectNear(double value, double expected) {
  EXPECT_NEAR(value, expected, 1e-9 * std::max(1.0, std::abs(expected)));
}

TEST(Plain, EqualsEveryDealByItself) {
  RandomQuestions questions(1);
  int answered = 0;
  for (int i = 0; i < 300; ++i) {
    EquityQuestion question = questions.Next();
    SCOPED_TRACE(Trace(question));
    const Result<CheckedQuestion> checked = Check(question);
    if (checked && *PlainCost(*checked) > 1e7) continue;  // a few take longer than all others
    const Result<EquityAnswer> answer = CountPlainly(question);
    const BruteForce brute(question);
    ASSERT_EQ(static_cast<bool>(answer), brute.cases > 0);
    if (!answer) continue;
    ++answered;
    if (question.folded.empty()) ExpectNear(answer->cases.Value(), brute.cases);
    for (std::size_t player = 0; player < answer->players.size(); ++player) {
      const PlayerAnswer& of = answer->players[player];
      ExpectNear(of.total.equity, brute.points[player] / brute.cases);
      ExpectNear(of.total.low, brute.low_points[player] / brute.cases);
      ExpectNear(of.total.wins.Value() / answer->cases.Value(), brute.wins[player] / brute.cases);
    }
  }
  EXPECT_GT(answered, 100);
}

// Adds up what an answer has in detail.
struct Added {
  double cases = 0, wins = 0, points = 0, low = 0;
  void Add(const Outcome& outcome) {
    cases += outcome.cases.Value();
    wins += outcome.wins.Value();
    points += outcome.equity * outcome.cases.Value();
    low += outcome.low * outcome.cases.Value();
  }
};

TEST(Plain, DetailsAddUpToTheTotals) {
  RandomQuestions questions(2);
  for (int i = 0; i < 60; ++i) {
    EquityQuestion question = questions.Next();
    const bool comes = question.board.size() < static_cast<int>(question.street);
    question.detail = {.hands = true, .next = comes, .made = true};
    SCOPED_TRACE(Trace(question));
    const Result<EquityAnswer> answer = CountPlainly(question);
    if (!answer) continue;
    // Of a river, any two cards were the turn; of a flop's turn, one.
    double ways = 0;
    for (const NextOutcome& next : answer->next) ways += next.players[0].cases.Value();
    ways /= answer->cases.Value();
    for (std::size_t player = 0; player < answer->players.size(); ++player) {
      const PlayerAnswer& of = answer->players[player];
      Added hands, made, next;
      for (const HandOutcome& hand : of.hands) hands.Add(hand.outcome);
      for (const MadeOutcome& category : of.made) made.Add(category.outcome);
      for (const NextOutcome& board : answer->next) next.Add(board.players[player]);
      for (const Added& added : {hands, made}) {
        ExpectNear(added.cases, answer->cases.Value());
        ExpectNear(added.wins, of.total.wins.Value());
        ExpectNear(added.points, of.total.equity * answer->cases.Value());
        ExpectNear(added.low, of.total.low * answer->cases.Value());
      }
      if (!comes) continue;
      EXPECT_NEAR(ways, std::round(ways), 1e-9);
      ExpectNear(next.points, ways * of.total.equity * answer->cases.Value());
      ExpectNear(next.low, ways * of.total.low * answer->cases.Value());
    }
  }
}

TEST(Plain, NextBoardsAreThoseOfTheStreet) {
  EquityQuestion question{.players = {Hand("AhKd"), Hand("7s7c")},
                          .street = Street::kFlop,
                          .method = Method::kExact,
                          .detail = {.next = true}};
  const Result<EquityAnswer> flops = Calculate(question);
  ASSERT_TRUE(flops);
  int alike = 0;
  for (const NextOutcome& next : flops->next) alike += next.alike;
  EXPECT_EQ(alike, 48 * 47 * 46 / 6);
  EXPECT_LE(flops->next.size(), 1755u);
  // A turn is the question with that card on the board.
  question.board = Cards("2c7dTh");
  question.street = Street::kRiver;
  const Result<EquityAnswer> turns = Calculate(question);
  ASSERT_TRUE(turns);
  ASSERT_EQ(turns->next.size(), 45u);
  const NextOutcome& turn = turns->next[20];
  question.board |= turn.cards;
  const Result<EquityAnswer> river = Calculate(question);
  ASSERT_TRUE(river);
  EXPECT_EQ(river->players[1].total.wins.units, turn.players[1].wins.units);
  EXPECT_EQ(river->cases.units, turn.players[1].cases.units);
}

TEST(Plain, WeightsAreRelativeAndWholeOnesCountCases) {
  EquityQuestion question{.players = {Holdings("AA"), Holdings("KK,AA")},
                          .board = Cards("2c7dThJs"),
                          .method = Method::kExact};
  const Result<EquityAnswer> whole = Calculate(question);
  ASSERT_TRUE(whole);
  EXPECT_TRUE(whole->cases.IsWhole());
  EXPECT_EQ(whole->cases.units, (36 + 6) * 44);
  std::vector<WeightedHand> half;
  for (const WeightedHand& hand : question.players[1].hands()) half.push_back({hand.cards, 5000});
  question.players[1] = HandRange(Game::kHoldem, half);
  const Result<EquityAnswer> halved = Calculate(question);
  ASSERT_TRUE(halved);
  EXPECT_EQ(halved->cases.Value(), (36 + 6) * 22);
  EXPECT_EQ(halved->players[0].total.equity, whole->players[0].total.equity);
}

// Figures of other programs, by counting all boards.
TEST(PlainSlow, WeighsHoldingsAfterBlockedOnesAreGone) {
  std::vector<WeightedHand> queens = ListOf(Holdings("22"));
  for (const WeightedHand& hand : ListOf(Holdings("QQ"))) queens.push_back({hand.cards, 100});
  const Result<EquityAnswer> aces = Calculate(
      {.players = {Holdings("AA"), HandRange(Game::kHoldem, queens)}, .method = Method::kExact});
  ASSERT_TRUE(aces);
  EXPECT_NEAR(aces->players[0].total.equity, 0.822101, 5e-7);
  const Result<EquityAnswer> blocked =
      Calculate({.players = {Holdings("AA,22"), Holdings("AA,KK")}, .method = Method::kExact});
  ASSERT_TRUE(blocked);
  EXPECT_NEAR(blocked->players[0].total.equity, 0.398684, 5e-7);
}

TEST(SuitSymmetry, IsWhatBoardCardsAndWeightsLeave) {
  const auto renamings = [](const EquityQuestion& question) {
    return SuitSymmetry(*Check(question)).renamings().size();
  };
  const HandRange some = Holdings("AKs,QQ+,T9o"), every = HandRange::Every(Game::kHoldem);
  EXPECT_EQ(renamings({.players = {some, every}}), 24u);
  EXPECT_EQ(renamings({.players = {some, every}, .board = Cards("2c7dTh")}), 1u);
  EXPECT_EQ(renamings({.players = {some, every}, .board = Cards("2c7cTc")}), 6u);
  EXPECT_EQ(renamings({.players = {some, every}, .dead = Cards("2c2h")}), 4u);
  EXPECT_EQ(renamings({.players = {some, Hand("AhKd")}}), 2u);
  EXPECT_EQ(renamings({.players = {some, every}, .folded = {Holdings("AsKs,AdKd")}}), 4u);
  std::vector<WeightedHand> weighted = ListOf(some);
  weighted[0].weight = 1;
  EXPECT_LT(renamings({.players = {HandRange(Game::kHoldem, weighted), every}}), 24u);
  // Clubs with diamonds and hearts with spades, but neither alone.
  const SuitSymmetry two(*Check({.players = {Holdings("AcKh,AdKs"), every}}));
  ASSERT_EQ(two.renamings().size(), 2u);
  EXPECT_EQ(two.AlikeTo(Cards("2c7h")), (std::vector<CardSet>{Cards("2c7h"), Cards("2d7s")}));
  EXPECT_EQ(two.FirstOf(Cards("2d7s")), Cards("2c7h"));
  EXPECT_EQ(two.AlikeTo(Cards("2c2d")).size(), 1u);
  EXPECT_EQ(two.TimesOf(Cards("2c7h")), 2);
  EXPECT_EQ(two.TimesOf(Cards("2d7s")), 0);
  EXPECT_EQ(two.TimesOf(Cards("2c2d")), 1);
}

std::vector<Int128> SumsOf(const Work& work, const CheckedQuestion& question) {
  std::vector<Int128> sums(SumsLayout(question).size());
  for (std::int64_t step = 0; step < work.steps(); ++step) work.Do(step, sums);
  return sums;
}

// Compares every solver that knows a question with plain enumeration, and counts them by name.
void CompareSolvers(const EquityQuestion& question, std::map<std::string, int>& fitted) {
  SCOPED_TRACE(Trace(question));
  Result<CheckedQuestion> checked = Check(question);
  if (!checked) return;
  const auto shared = std::make_shared<const CheckedQuestion>(*std::move(checked));
  const std::vector<Int128> plain = SumsOf(*StartPlain(shared), *shared);
  for (const Solver& solver : Solvers()) {
    if (!solver.cost(*shared)) continue;
    const std::unique_ptr<const Work> work = solver.start(shared);
    EXPECT_EQ(SumsOf(*work, *shared), plain) << work->name();
    ++fitted[work->name()];
  }
}

// On random questions.
std::map<std::string, int> CompareSolvers(std::uint32_t seed, int count) {
  RandomQuestions questions(seed);
  std::map<std::string, int> fitted;
  for (int i = 0; i < count; ++i) {
    EquityQuestion question = i % 60 == 59   ? questions.NextBeforeTheFlop()
                              : i % 60 == 29 ? questions.NextOmahaBeforeTheFlop()
                                             : questions.Next();
    const bool comes = question.board.size() < static_cast<int>(question.street);
    question.detail = {.hands = questions.Below(2) == 0,
                       .next = comes && questions.Below(4) == 0,
                       .made = i % 60 != 59 && questions.Below(8) == 0};
    CompareSolvers(question, fitted);
  }
  return fitted;
}

// Ranges that do not tell suits apart, or only some, as random ones seldom are; a flop may leave of
// the second one a hand with another weight, or no deal.
TEST(Solvers, CountAlikeNextBoardsOnce) {
  std::vector<WeightedHand> few = ListOf(Holdings("QsQh,7s7h,AsAh"));
  few[0].weight = 6;
  few[1].weight = 4;
  const HandRange uneven(Game::kHoldem, few), suited = Holdings("AA,T9s");
  const EquityQuestion kQuestions[] = {
      {.players = {suited, Holdings("KQo,99")}, .street = Street::kFlop},
      {.players = {suited, uneven}, .dead = Cards("2c2d"), .street = Street::kFlop},
      {.players = {Holdings("AcKh,AdKs"), Holdings("QQ"), Hand("7c7d")}, .street = Street::kFlop},
      {.players = {Holdings("KK,AKs"), suited, Holdings("QQ")}, .board = Cards("2c7cTc")},
      {.players = {suited, HandRange::Every(Game::kHoldem)}, .board = Cards("2c2d7h7s")},
      {.players = {suited, Holdings("KQs")}, .board = Cards("2c2d"), .street = Street::kTurn},
  };
  for (EquityQuestion question : kQuestions) {
    SCOPED_TRACE(Trace(question));
    question.detail = {.hands = question.players.size() == 2, .next = true};
    question.method = Method::kExact;
    const auto shared = std::make_shared<const CheckedQuestion>(*Check(question));
    EXPECT_GT(SuitSymmetry(*shared).renamings().size(), 1u);
    EXPECT_EQ(SumsOf(*StartNextBoards(shared), *shared), SumsOf(*StartPlain(shared), *shared));
  }
}

// Ranges that know no suits, on a board that tells one of them apart.
TEST(SolversSlow, CountBoardsThatAreAlikeOnce) {
  constexpr int kSuits[][4] = {{0, 1, 2, 3}, {0, 1, 3, 2}, {0, 2, 1, 3},
                               {0, 2, 3, 1}, {0, 3, 1, 2}, {0, 3, 2, 1}};
  std::map<std::string, int> fitted;
  for (const Game game : {Game::kOmaha, Game::kOmahaHighLow, Game::kOmaha5, Game::kOmaha5HighLow}) {
    const auto length = static_cast<std::size_t>(2 * RulesOf(game).hand_size);
    EquityQuestion question{
        .game = game, .board = Cards("2c7c8c"), .dead = Cards("Kc"), .detail = {.hands = true}};
    for (const std::string_view text :
         {"Ac3c4d9h9d Tc9cTdJh3d AdAh5d5h4c", "AcQcAd4hJh 6c9d6d2hAc"}) {
      std::vector<WeightedHand> hands;
      for (std::size_t first = 0; first < text.size(); first += 11) {
        for (const auto& suits : kSuits) {
          CardSet cards;
          for (const int card : Cards(text.substr(first, length))) {
            cards.Add(suits[card / 13] * 13 + card % 13);
          }
          hands.push_back({cards, 100 + static_cast<int>(first)});
        }
      }
      question.players.push_back(HandRange(game, std::move(hands)));
    }
    CompareSolvers(question, fitted);
  }
  EXPECT_EQ(fitted["Omaha ranges"], 4);
}

// Every hand has the four of hearts, which the flop in the middle of all of them blocks.
TEST(Solvers, CutAndCostNextBoardsThatMayBeBlocked) {
  constexpr int kFour = 2, kKingOfSpades = 50;
  std::vector<WeightedHand> hands;
  for (int card = 13; card <= kKingOfSpades; ++card) {
    const bool is_other_king = card % 13 == 11 && card != kKingOfSpades;
    if (card % 13 == kFour || card % 13 == 12 || is_other_king) continue;
    CardSet cards = Cards("4h");
    cards.Add(card);
    hands.push_back({cards});
  }
  EquityQuestion question{
      .players = {HandRange(Game::kHoldem, hands), HandRange::Every(Game::kHoldem)},
      .detail = {.next = true}};
  const Result<Calculation> plan = Plan(question);
  ASSERT_TRUE(plan);
  EXPECT_EQ(plan->method(), Method::kSampled);
  question.method = Method::kExact;
  const Result<Calculation> exact = Plan(question);
  ASSERT_TRUE(exact);
  EXPECT_GT(exact->steps(), 100);
}

// On boards that stand for others, with weights, lows and what comes next beside it.
TEST(Solvers, CountWhatIsMadeBoardByBoard) {
  const EquityQuestion kQuestions[] = {
      {.players = {Holdings("AA,T9s"), Holdings("QQ,KJo")}, .board = Cards("2c7cTc")},
      {.players = {HandRange(Game::kHoldem, {{Cards("AcAd"), 5}, {Cards("AcAh"), 10}}),
                   Holdings("QQ")},
       .street = Street::kFlop},
      {.players = {Holdings("AKs"), Holdings("QQ,JTs"), Holdings("77")},
       .board = Cards("2c2d7h"),
       .street = Street::kTurn},
      {.game = Game::kOmahaHighLow,
       .players = {HandRange(Game::kOmahaHighLow, {{Cards("AcAd2c2d"), 7}, {Cards("AcAd2d3c"), 3}}),
                   HandRange::Of(Game::kOmahaHighLow, Cards("KsKh4s5h"))},
       .board = Cards("3s4h8d")},
  };
  for (EquityQuestion question : kQuestions) {
    SCOPED_TRACE(Trace(question));
    question.detail = {.hands = true, .next = question.board.size() == 3, .made = true};
    const auto shared = std::make_shared<const CheckedQuestion>(*Check(question));
    const std::vector<Int128> plain = SumsOf(*StartPlain(shared), *shared);
    EXPECT_EQ(SumsOf(*StartMade(shared), *shared), plain);
    if (!MadeOfTwoCost(*shared)) continue;
    EXPECT_EQ(SumsOf(*StartMadeOfTwo(shared), *shared), plain);
  }
}

TEST(Solvers, EqualPlainEnumeration) { EXPECT_GT(CompareSolvers(3, 60).size(), 3u); }

// Large ranges, whose hands are counted sixteen at a time.
TEST(Solvers, LargeOmahaRangesAddUp) {
  for (const Game game : {Game::kOmahaHighLow, Game::kOmaha5, Game::kOmaha5HighLow}) {
    SCOPED_TRACE(RulesOf(game).name);
    EquityQuestion question{.game = game, .board = Cards("4c8c9cTd"), .detail = {.hands = true}};
    for (const char* text : {"1%", "20%-21%"}) {
      std::vector<WeightedHand> hands = ListOf(ReadRange(game, text).value().range);
      for (std::size_t i = 0; i < hands.size(); i += 3) hands[i].weight = 7000;
      question.players.push_back(HandRange(game, std::move(hands)));
    }
    const Result<EquityAnswer> answer = Calculate(question);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->method, Method::kExact);
    const PlayerAnswer& first = answer->players[0];
    const PlayerAnswer& second = answer->players[1];
    EXPECT_EQ(first.total.ties.units, second.total.ties.units);
    EXPECT_EQ(first.total.wins.units + second.total.wins.units + first.total.ties.units,
              answer->cases.units);
    EXPECT_NEAR(first.total.equity + second.total.equity, 1, 1e-12);
    for (const PlayerAnswer& player : answer->players) {
      Int128 cases = 0, wins = 0;
      for (const HandOutcome& hand : player.hands) {
        cases += hand.outcome.cases.units;
        wins += hand.outcome.wins.units;
      }
      EXPECT_EQ(cases, answer->cases.units);
      EXPECT_EQ(wins, player.total.wins.units);
    }
  }
}

// Where their weights add up to more than 32 bits hold they are for other solvers.
TEST(Solvers, LeaveFineWeightsOfLargeOmahaRanges) {
  std::vector<WeightedHand> hands = ListOf(ReadRange(Game::kOmaha5, "20%").value().range);
  const auto cost = [&] {
    const HandRange range(Game::kOmaha5, hands);
    return OmahaRangesCost(*Check({.game = Game::kOmaha5, .players = {range, range}}));
  };
  EXPECT_TRUE(cost());
  hands.back().weight = kWholeWeight - 1;
  EXPECT_FALSE(cost());
}

// Whose boards stand for others that differ in the names of suits.
TEST(Solvers, EqualPlainEnumerationWhereSuitsAreAlike) {
  std::map<std::string, int> fitted;
  const HandRange pairs = Holdings("QQ"), aces = Holdings("AKs");
  const HandRange weighted(
      Game::kHoldem, {{Cards("QcJd"), 7}, {Cards("QdJc"), 7}, {Cards("QhJs"), 5}, {Cards("TcTd")}});
  CompareSolvers(
      {.players = {pairs, aces, pairs}, .street = Street::kFlop, .detail = {.hands = true}},
      fitted);
  CompareSolvers({.players = {Holdings("AA,KK"), weighted, aces},
                  .board = Cards("2h7h"),
                  .street = Street::kTurn,
                  .detail = {.hands = true}},
                 fitted);
  CompareSolvers({.players = {Holdings("AA,KK"), Holdings("AKs,ATs"), Holdings("QQ,98s")},
                  .board = Cards("2c7cTc"),
                  .dead = Cards("2d2h2s"),
                  .detail = {.hands = true}},
                 fitted);
  EXPECT_EQ(fitted["three ranges board by board"], 3);
}

// Three ranges before the flop, matchup by matchup.
std::vector<Int128> SumsOfMatchups(const CheckedQuestion& question) {
  const Settler settler(question);
  std::vector<Int128> sums(SumsLayout(question).size());
  const auto hand_of = [&](const SettledDeal& deal, std::size_t i) -> const WeightedHand& {
    return question.players()[i].range.hands()[deal.hands[i]];
  };
  SettledDeal deal;
  const auto settle = [&](std::span<const CardSet, 3> hands, Int128 weight) {
    std::vector<std::int64_t> times(8);
    CountSeveralHands(BestIsa(), Deck::kFull, hands, {}, Street::kRiver, times);
    for (unsigned sharers = 1; sharers < 8; ++sharers) {
      if (times[sharers] == 0) continue;
      for (std::size_t i = 0; i < 3; ++i) deal.worths[i].high = (sharers >> i & 1) != 0 ? 2 : 1;
      settler.Add(deal, weight * times[sharers], sums);
    }
  };
  const auto size_of = [&](std::size_t i) { return question.players()[i].range.size(); };
  for (deal.hands[0] = 0; deal.hands[0] < size_of(0); ++deal.hands[0]) {
    for (deal.hands[1] = 0; deal.hands[1] < size_of(1); ++deal.hands[1]) {
      for (deal.hands[2] = 0; deal.hands[2] < size_of(2); ++deal.hands[2]) {
        std::array<CardSet, 3> hands;
        CardSet all;
        Int128 weight = 1;
        for (std::size_t i = 0; i < 3; ++i) {
          hands[i] = hand_of(deal, i).cards;
          all |= hands[i];
          weight *= hand_of(deal, i).weight / question.players()[i].unit;
        }
        if (all.size() == 6) settle(hands, weight);
      }
    }
  }
  return sums;
}

// Of up to six ranks, so that they share cards, with weights or without, all of a class or some.
HandRange RangeOfFewRanks(std::mt19937& random, std::size_t ranks, bool knows_suits) {
  const auto below = [&](std::size_t limit) { return static_cast<int>(random() % limit); };
  std::vector<WeightedHand> hands;
  const std::size_t most = below(3) == 0 ? kWholeWeight : 1 + random() % 3;
  for (int classes = 1 + below(3); classes > 0; --classes) {
    const int rank1 = 12 - below(ranks), rank2 = 12 - below(ranks), weight = 1 + below(most);
    const bool suited = below(2) == 0;
    for (int suits = 0; suits < 16; ++suits) {
      const CardSet cards{rank1 + 13 * (suits % 4), rank2 + 13 * (suits / 4)};
      const bool is_kind = rank1 == rank2 || suited == (suits % 4 == suits / 4);
      const bool seen = std::ranges::count(hands, cards, &WeightedHand::cards) > 0;
      if (cards.size() < 2 || !is_kind || seen || (knows_suits && below(3) == 0)) continue;
      hands.push_back({cards, knows_suits ? 1 + below(most) : weight});
    }
  }
  if (hands.empty()) hands.push_back({CardSet{0, 1}});
  return HandRange(Game::kHoldem, std::move(hands));
}

int CompareThreeWay(std::uint32_t seed, int count) {
  std::mt19937 random(seed);
  int compared = 0;
  for (int i = 0; i < count; ++i) {
    const std::size_t ranks = 2 + random() % 5;
    const bool knows_suits = i % 2 == 0;
    EquityQuestion question;
    for (int k = 0; k < 3; ++k) {
      const bool repeat = k > 0 && random() % 3 == 0;
      question.players.push_back(repeat ? question.players.back()
                                        : RangeOfFewRanks(random, ranks, knows_suits));
    }
    question.detail.hands = random() % 2 == 0;
    SCOPED_TRACE(Trace(question));
    const Result<CheckedQuestion> checked = Check(question);
    if (!checked) continue;
    ++compared;
    EXPECT_TRUE(KnowsThreeWay(*checked));
    const auto shared = std::make_shared<const CheckedQuestion>(*checked);
    EXPECT_EQ(SumsOf(*StartThreeWay(shared), *shared), SumsOfMatchups(*checked));
  }
  return compared;
}

TEST(Solvers, ThreeWayEqualsMatchupByMatchup) { EXPECT_GT(CompareThreeWay(7, 20), 12); }
TEST(SolversSlow, ThreeWayEqualsMatchupByMatchup) { EXPECT_GT(CompareThreeWay(8, 300), 200); }

TEST(SolversSlow, ThreeWayEqualsPlainEnumeration) {
  const HandRange weighted(Game::kHoldem,
                           {{Cards("QcJd"), 7}, {Cards("QdJc"), 9}, {Cards("TcTd")}});
  for (const EquityQuestion& question :
       {EquityQuestion{.players = {Hand("AhKd"), Hand("QcQd"), weighted}},
        EquityQuestion{.players = {Holdings("AKs"), Hand("AhQh"), Hand("7c7d")},
        .detail = {.hands = true}}}) {
    SCOPED_TRACE(Trace(question));
    const auto shared = std::make_shared<const CheckedQuestion>(*Check(question));
    EXPECT_EQ(SumsOf(*StartThreeWay(shared), *shared), SumsOf(*StartPlain(shared), *shared));
  }
}

// What is sampled without a table is not counted because that became faster.
TEST(Solvers, ThreeWayCountsOnlyWhereSomebodyWould) {
  if (ThreeWayTable::Get() != nullptr) GTEST_SKIP() << "with a table more is counted";
  EquityQuestion question{.players = {Holdings("AA,KK"), Holdings("AK"), Holdings("QQ")}};
  const bool counted = *ThreeRangesCost(*Check(question)) <= question.exact_budget;
  EXPECT_EQ(ThreeWayCost(*Check(question)).has_value(), counted);
  question.exact_budget = 1;
  EXPECT_FALSE(ThreeWayCost(*Check(question)));
  question.method = Method::kExact;
  EXPECT_TRUE(ThreeWayCost(*Check(question)));
  const Result<EquityAnswer> answer = Calculate(question);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->solver, "matchups of three hands");
}

TEST(Solvers, ThreeWayLeavesWhatItDoesNotKnow) {
  const HandRange pairs = Holdings("QQ"), aces = Holdings("AKs");
  const EquityQuestion known{.players = {pairs, aces, aces}};
  EXPECT_TRUE(KnowsThreeWay(*Check(known)));
  const auto expect_unknown = [&](const auto& change) {
    EquityQuestion question = known;
    change(question);
    EXPECT_FALSE(KnowsThreeWay(*Check(question)));
    EXPECT_FALSE(ThreeWayCost(*Check(question)));
  };
  expect_unknown([&](EquityQuestion& question) { question.players.push_back(aces); });
  expect_unknown([&](EquityQuestion& question) { question.folded = {Holdings("77,88")}; });
  expect_unknown([&](EquityQuestion& question) { question.folded = {Hand("7c8d")}; });
  expect_unknown([&](EquityQuestion& question) { question.board = Cards("2c7dTh"); });
  expect_unknown([&](EquityQuestion& question) { question.dead = Cards("2c"); });
  expect_unknown([&](EquityQuestion& question) { question.street = Street::kTurn; });
  expect_unknown([&](EquityQuestion& question) { question.detail.next = true; });
  expect_unknown([&](EquityQuestion& question) { question.detail.made = true; });
  expect_unknown([](EquityQuestion& question) {
    question.game = Game::kShortDeck;
    for (HandRange& range : question.players) range = HandRange::Every(Game::kShortDeck);
  });
}

TEST(SolversSlow, AllEqualPlainEnumeration) {
  std::map<std::string, int> fitted = CompareSolvers(3156, 800);
  fitted.erase("matchups of three hands");  // has tests of its own
  EXPECT_EQ(fitted.size() + 1, Solvers().size());
  for (const auto& [name, times] : fitted) EXPECT_GE(times, 5) << name;
}

// --- sampling ---

// That so many of the trials, of which a count expects a part, are no further from it than chance
// lets them.
void ExpectPart(const CaseCount& sampled, double part, double trials) {
  EXPECT_NEAR(sampled.Value(), part * trials, 5 * std::sqrt(part * (1 - part) * trials) + 5);
}

// The same for an outcome of a player or of one of his hands.
void ExpectSampleOf(const Outcome& exact, const Outcome& sampled) {
  const double trials = sampled.cases.Value();
  if (trials == 0) return;
  ExpectPart(sampled.wins, exact.wins.Value() / exact.cases.Value(), trials);
  ExpectPart(sampled.ties, exact.ties.Value() / exact.cases.Value(), trials);
  EXPECT_NEAR(sampled.equity, exact.equity, 5 * 0.5 / std::sqrt(trials) + 5 / trials);
}

void ExpectSampleOf(const PlayerAnswer& exact, const PlayerAnswer& sampled) {
  const double cases = exact.total.cases.Value();
  const double trials = sampled.total.cases.Value();
  EXPECT_NEAR(sampled.total.equity, exact.total.equity, 4 * *sampled.standard_error + 1e-4);
  EXPECT_NEAR(sampled.total.low, exact.total.low, 4 * 0.25 / std::sqrt(trials));
  ExpectSampleOf(exact.total, sampled.total);
  for (std::size_t k = 0; k < kMostPlayers; ++k) {
    ExpectPart(sampled.shared[k], exact.shared[k].Value() / cases, trials);
    ExpectPart(sampled.low_shared[k], exact.low_shared[k].Value() / cases, trials);
  }
  ASSERT_EQ(sampled.hands.size(), exact.hands.size());
  for (std::size_t i = 0; i < exact.hands.size(); ++i) {
    const Outcome& of_hand = exact.hands[i].outcome;
    EXPECT_EQ(sampled.hands[i].hand, exact.hands[i].hand);
    ExpectPart(sampled.hands[i].outcome.cases, of_hand.cases.Value() / cases, trials);
    ExpectSampleOf(of_hand, sampled.hands[i].outcome);
  }
}

constexpr std::string_view kInPools = "random deals in pools";

TEST(Sampling, ComesNearTheCountInEveryNumber) {
  RandomQuestions questions(4);
  int checked = 0;
  for (int i = 0; i < 300 && checked < 100; ++i) {
    EquityQuestion question = questions.Next();
    SCOPED_TRACE(Trace(question));
    question.detail.hands = i % 2 == 0;
    question.method = Method::kExact;
    const Result<EquityAnswer> exact = Calculate(question);
    if (!exact) continue;
    question.method = Method::kSampled;
    question.sampling = {.standard_error = 0, .trials = 50000};
    const Result<EquityAnswer> sampled = Calculate(question);
    ASSERT_TRUE(sampled);
    if (sampled->solver == kInPools) continue;  // trials that share hands stray further
    ++checked;
    for (std::size_t player = 0; player < exact->players.size(); ++player) {
      ExpectSampleOf(exact->players[player], sampled->players[player]);
    }
  }
  EXPECT_EQ(checked, 100);
}

// That what is drawn as often as expected does not stray from it further than chance lets it.
void ExpectFrequencies(std::span<const double> drawn, std::span<const double> weights) {
  const double trials = std::reduce(drawn.begin(), drawn.end());
  const double all = std::reduce(weights.begin(), weights.end());
  double chi_square = 0;
  for (std::size_t i = 0; i < drawn.size(); ++i) {
    const double expected = trials * weights[i] / all;
    ASSERT_GT(expected, 5);
    chi_square += (drawn[i] - expected) * (drawn[i] - expected) / expected;
  }
  const double freedom = static_cast<double>(drawn.size()) - 1;
  EXPECT_LT(chi_square, freedom + 4 * std::sqrt(2 * freedom));
  EXPECT_GT(chi_square, freedom - 4 * std::sqrt(2 * freedom));
}

TEST(Sampling, DrawsHandsAndBoardsAsOftenAsTheirWeightsSay) {
  std::vector<WeightedHand> weighted;
  for (const WeightedHand& hand : ListOf(Holdings("TT+,AKs,AQo"))) {
    weighted.push_back({hand.cards, 500 + 700 * static_cast<int>(weighted.size() % 9)});
  }
  // Ranges that clash, one that folded, one who holds anything.
  EquityQuestion question{.players = {HandRange(Game::kHoldem, weighted), Holdings("QQ+,AK"),
                                      HandRange::Every(Game::kHoldem)},
                          .folded = {Holdings("AQs,JJ")},
                          .board = Cards("2cTd3h"),
                          .street = Street::kTurn,
                          .method = Method::kSampled,
                          .detail = {.hands = true, .next = true},
                          .sampling = {.standard_error = 0, .trials = 1 << 20}};
  const Result<EquityAnswer> sampled = Calculate(question);
  ASSERT_TRUE(sampled);
  // On the flop itself all deals can be counted.
  question.street = Street::kFlop;
  question.detail.next = false;
  question.method = Method::kExact;
  const Result<EquityAnswer> exact = Calculate(question);
  ASSERT_TRUE(exact);
  for (std::size_t player = 0; player < 3; ++player) {
    SCOPED_TRACE(player);
    std::vector<double> drawn, weights;
    const auto& hands = sampled->players[player].hands;
    ASSERT_EQ(hands.size(), exact->players[player].hands.size());
    for (std::size_t i = 0; i < hands.size(); ++i) {
      drawn.push_back(hands[i].outcome.cases.Value());
      weights.push_back(exact->players[player].hands[i].outcome.cases.Value());
    }
    ExpectFrequencies(drawn, weights);
  }
}

TEST(Sampling, DealsBoardsUniformly) {
  for (const Game game : {Game::kHoldem, Game::kShortDeck}) {
    const Result<EquityAnswer> sampled =
        Calculate({.game = game,
                   .players = {Hand("AhKd", game), HandRange::Every(game)},
                   .dead = Cards("9c"),
                   .method = Method::kSampled,
                   .detail = {.next = true},
                   .sampling = {.standard_error = 0, .trials = 1 << 18}});
    ASSERT_TRUE(sampled);
    std::vector<double> drawn, weights;
    for (const NextOutcome& next : sampled->next) {
      drawn.push_back(next.players[0].cases.Value());
      weights.push_back(next.alike);
    }
    ExpectFrequencies(drawn, weights);
  }
}

// Boards of five at once, against the frequencies of a hash of all boards.
TEST(Sampling, DealsWholeBoardsUniformly) {
  constexpr std::size_t kCells = 509;
  const auto question =
      Check({.players = {Hand("AhKd"), Hand("7s7c"), HandRange::Every(Game::kHoldem)}});
  ASSERT_TRUE(question);
  const auto add = [](CardSet cards, std::vector<double>& cells) {
    ++cells[cards.bits() * 0x9E3779B97F4A7C15 % kCells];
  };
  std::vector<double> weights(kCells), boards(kCells);
  for (const DealtCards& board : DealtSetsOf(question->live() - question->certain(), 5)) {
    add(board.cards, weights);
  }
  const Dealing dealing(*question);
  RandomNumbers random(1, 0);
  DealtBlock block;
  for (int i = 0; i < 2000; ++i) {
    std::int64_t attempts = DealtBlock::kMost;
    ASSERT_EQ(dealing.Deal(random, DealtBlock::kMost, attempts, block), DealtBlock::kMost);
    for (std::size_t deal = 0; deal < DealtBlock::kMost; ++deal) {
      ASSERT_FALSE(block.board[deal].cards.Meets(block.hands[2][deal].cards));
      add(block.board[deal].cards, boards);
    }
  }
  ExpectFrequencies(boards, weights);
}

// Any hands of the 18 cards that are left, against the frequencies of a hash of all of them.
TEST(Sampling, DealsHandsOfAnySizeUniformly) {
  constexpr std::size_t kCells = 101;
  const auto cell_of = [](CardSet cards) { return cards.bits() * 0x9E3779B97F4A7C15 % kCells; };
  for (const int size : kOmahaHandSizes) {
    SCOPED_TRACE(size);
    const GameRules& rules = *std::ranges::find_if(
        kGames, [size](const GameRules& game) { return game.hand_size == size; });
    const CardSet cards = rules.Deck();
    const std::vector<int> deck(cards.begin(), cards.end());
    const std::span<const int> known = std::span(deck).last(34);
    const auto hole_cards = static_cast<std::size_t>(size);
    const auto question =
        Check({.game = rules.game,
               .players = {HandRange::Of(rules.game, CardSet(known.first(hole_cards))),
                           HandRange::Every(rules.game)},
               .board = CardSet(known.subspan(hole_cards, 5)),
               .dead = CardSet(known.subspan(hole_cards + 5))});
    ASSERT_TRUE(question);
    std::vector<double> weights(kCells), hands(kCells);
    for (const DealtCards& hand : DealtSetsOf(question->live() - question->certain(), size)) {
      ++weights[cell_of(hand.cards)];
    }
    const Dealing dealing(*question);
    RandomNumbers random(1, 0);
    DealtBlock block;
    for (int i = 0; i < 200; ++i) {
      std::int64_t attempts = DealtBlock::kMost;
      ASSERT_EQ(dealing.Deal(random, DealtBlock::kMost, attempts, block), DealtBlock::kMost);
      for (const DealtCards& hand : block.hands[1]) ++hands[cell_of(hand.cards)];
    }
    ExpectFrequencies(hands, weights);
  }
}

TEST(Sampling, DrawsByWeightsOfAnySize) {
  // Alike, of sums below 32 bits, and beyond them, where numbers are drawn in two parts.
  const std::vector<std::vector<std::uint64_t>> kWeights = {
      {1, 1, 1, 1, 1},
      {1, 2, 3, 400},
      {2'000'000'000, 1'000'000'000, 1'000'000'001},
      {3'000'000'000, 700'000'000, 1'000'000'001},
      {50'000'000'000, 30'000'000'001, 1'000'000'000'000}};
  RandomNumbers random(2, 0);
  for (const std::vector<std::uint64_t>& all : kWeights) {
    SCOPED_TRACE(all[0]);
    std::vector<double> drawn(all.size());
    const std::vector<double> weights(all.begin(), all.end());
    const Bag bag(all);
    DealtBlock::Each<std::uint32_t> places;
    for (int i = 0; i < 4000; ++i) {
      bag.Draw(random, places);
      for (const std::uint32_t place : places) ++drawn[place];
    }
    ExpectFrequencies(drawn, weights);
  }
}

TEST(Sampling, NumbersAreUniformAndTheSameWithAllInstructions) {
  // A quarter of the numbers has to be drawn again.
  const PairLimits pair_limits(3u << 30, 7), single_limits(3u << 30, 3u << 30);
  std::vector<double> first(48), second(7), single(48);
  std::vector<RandomNumbers> random;
  for (const Isa isa : {Isa::kBaseline, Isa::kAvx2, Isa::kAvx512}) {
    if (isa <= BestIsa()) random.emplace_back(3, 4, isa);
  }
  for (std::size_t size = 0; size < 2000; ++size) {
    std::vector<std::vector<std::uint64_t>> drawn;
    for (RandomNumbers& numbers : random) {
      std::vector<DrawnPair> pairs(size % 600);
      std::vector<std::uint32_t> singles(size % 599);
      numbers.Draw(pair_limits, pairs);
      numbers.Draw(single_limits, singles);
      std::vector<std::uint64_t>& bits = drawn.emplace_back(singles.begin(), singles.end());
      for (const DrawnPair& pair : pairs) bits.push_back(pair.bits);
      if (drawn.size() > 1) {
        ASSERT_EQ(drawn.back(), drawn[0]);
        continue;
      }
      for (const std::uint32_t number : singles) ++single.at(number >> 26);
      for (const DrawnPair& pair : pairs) {
        ++first.at(pair.first() >> 26);
        ++second.at(pair.second());
      }
    }
  }
  for (const auto& numbers : {first, second, single}) {
    ExpectFrequencies(numbers, std::vector<double>(numbers.size(), 1));
  }
}

TEST(Sampling, ValuesHandsOnManyBoards) {
  const GameRules& rules = RulesOf(Game::kHoldem);
  std::mt19937 random(6);
  std::vector<int> deck = ListOf(rules.Deck());
  for (int i = 0; i < 100; ++i) {
    std::array<DealtCards, 101> boards, hands;
    for (std::size_t deal = 0; deal < boards.size(); ++deal) {
      std::shuffle(deck.begin() + (deal == 0 ? 0 : 2), deck.end(), random);
      hands[deal] = DealtOf(CardSet(std::span(deck).first(2)));
      boards[deal] = DealtOf(CardSet(std::span(deck).subspan(2, 5)));
    }
    DealValues of_one, of_many;
    OneHand<HoldemValues<5>>(rules, hands[0]).Of(RankedBoards(boards), of_one);
    HoldemValues<5>(rules).Of(
        boards, [&](std::size_t deal) { return hands[deal]; }, of_many);
    for (std::size_t deal = 0; deal < boards.size(); ++deal) {
      const int value = WorthOf(rules, ListOf(hands[deal].cards), ListOf(boards[deal].cards)).high;
      ASSERT_EQ(of_one[deal], value);
      ASSERT_EQ(of_many[deal], value);
    }
  }
}

TEST(Sampling, FindsSharersWithAllInstructions) {
  std::mt19937 random(5);
  std::vector<DealValues> values(kMostPlayers);
  for (const std::size_t players : {2u, 3u, 10u}) {
    for (DealValues& of_player : values) {
      for (std::int16_t& value : of_player) value = static_cast<std::int16_t>(1 + random() % 4);
    }
    for (const Isa isa : {Isa::kBaseline, Isa::kAvx2, Isa::kAvx512}) {
      if (isa > BestIsa()) continue;
      DealValues sharers;
      FindSharers(isa, std::span(values).first(players), sharers);
      for (std::size_t deal = 0; deal < sharers.size(); ++deal) {
        int best = 0, expected = 0;
        for (std::size_t i = 0; i < players; ++i) best = std::max<int>(best, values[i][deal]);
        for (std::size_t i = 0; i < players; ++i) expected |= (values[i][deal] == best) << i;
        ASSERT_EQ(sharers[deal], expected);
      }
    }
  }
}

TEST(Sampling, EndsAtItsStandardErrorOrTrials) {
  EquityQuestion question{.players = {Hand("AhKd"), Hand("7s7c")},
                          .method = Method::kSampled,
                          .sampling = {.standard_error = 0.002}};
  const Result<EquityAnswer> rough = Calculate(question);
  ASSERT_TRUE(rough);
  EXPECT_LE(*rough->players[0].standard_error, 0.002);
  EXPECT_GT(*rough->players[0].standard_error, 0.001);
  question.method = Method::kExact;
  const Result<EquityAnswer> exact = Calculate(question);
  ASSERT_TRUE(exact);
  EXPECT_NEAR(rough->players[0].total.equity, exact->players[0].total.equity, 0.008);
  question.method = Method::kSampled;
  question.sampling = {.standard_error = 0, .trials = 5001};
  const Result<EquityAnswer> trials = Calculate(question);
  ASSERT_TRUE(trials);
  EXPECT_EQ(trials->cases.units, 5001);
  // Trials that are all alike do not say how sure that is, but how many there were.
  question.board = Cards("AsAcKsKc");
  const Result<EquityAnswer> alike = Calculate(question);
  ASSERT_TRUE(alike);
  ASSERT_EQ(alike->players[0].total.equity, 1);
  for (const PlayerAnswer& player : alike->players) EXPECT_EQ(player.standard_error, 1.0 / 5002);
}

TEST(Sampling, DealsWhereThereIsHardlyAnyRoom) {
  // All cards but one turn, and all but one flop, are dead.
  EquityQuestion question{.players = {Hand("AhKd"), Hand("7s7c")},
                          .board = Cards("2c3dTh"),
                          .street = Street::kTurn,
                          .method = Method::kSampled,
                          .detail = {.next = true},
                          .sampling = {.standard_error = 0, .trials = 10}};
  for (const std::string_view come : {"Kc", "2c3dTh"}) {
    question.dead = RulesOf(Game::kHoldem).Deck() - Cards("AhKd7s7c") - Cards(come);
    question.street = come.size() > 2 ? Street::kFlop : Street::kTurn;
    question.board = come.size() > 2 ? CardSet() : Cards("2c3dTh");
    question.dead -= question.board;
    const Result<EquityAnswer> only = Calculate(question);
    ASSERT_TRUE(only);
    ASSERT_EQ(only->next.size(), 1u);
    EXPECT_EQ(only->next[0].cards, Cards(come));
    EXPECT_EQ(only->players[0].total.wins.units, come.size() > 2 ? 0 : 10);
  }
  // Nine hands of five cards and a board leave two of the deck.
  const Result<EquityAnswer> full =
      Calculate({.game = Game::kOmaha5,
                 .players = std::vector<HandRange>(9, HandRange::Every(Game::kOmaha5)),
                 .method = Method::kSampled,
                 .sampling = {.standard_error = 0, .trials = 20000}});
  ASSERT_TRUE(full);
  for (const PlayerAnswer& player : full->players) {
    EXPECT_NEAR(player.total.equity, 1.0 / 9, 5 * *player.standard_error);
  }
}

// Hands of some cards, so many for each seat, with weights.
std::vector<HandRange> RangesOf(Game game, CardSet from, std::size_t seats, std::size_t size) {
  std::mt19937 random(8);
  std::vector<HandRange> ranges;
  std::vector<int> cards = ListOf(from);
  for (std::size_t seat = 0; seat < seats; ++seat) {
    std::vector<WeightedHand> hands;
    for (std::size_t i = 0; i < size; ++i) {
      std::shuffle(cards.begin(), cards.end(), random);
      const auto held = static_cast<std::size_t>(RulesOf(game).hand_size);
      hands.push_back({CardSet(std::span(cards).first(held)), 2000 + 1000 * int(i % 9)});
    }
    ranges.emplace_back(game, std::move(hands));
  }
  return ranges;
}

// Ranges of which less than one of a hundred deals fits, and few enough that all can be counted:
// three and one who folded, halves that do not fit often either, and Hold'em.
std::vector<EquityQuestion> PooledQuestions() {
  const std::vector<int> deck = ListOf(RulesOf(Game::kOmaha).Deck() - Cards("2c7dThJs3d"));
  const auto ranges = [&](Game game, std::size_t cards, std::size_t seats, std::size_t size) {
    return RangesOf(game, CardSet(std::span(deck).last(cards)), seats, size);
  };
  const std::vector<HandRange> four = ranges(Game::kOmaha, 18, 4, 90);
  return {{.game = Game::kOmaha,
           .players = {four[0], four[1], four[2]},
           .folded = {four[3]},
           .board = Cards("2c7dThJs3d"),
           .detail = {.hands = true},
           .sampling = {.trials = 1500}},
          {.game = Game::kOmahaHighLow,
           .players = ranges(Game::kOmahaHighLow, 27, 6, 40),
           .board = Cards("2c7dThJs"),
           .sampling = {.trials = 700}},
          {.players = std::vector<HandRange>(5, Holdings("QQ+,AKs")),
           .board = Cards("2c7dThJs3d"),
           .sampling = {.trials = 2000}}};
}

// With the error that they tell: that is how far answers of many seeds are from the truth.
TEST(Sampling, PoolsComeNearTheCount) {
  constexpr int kSeeds = 40;
  for (EquityQuestion& question : PooledQuestions()) {
    SCOPED_TRACE(Trace(question));
    question.method = Method::kExact;
    const Result<EquityAnswer> exact = Calculate(question);
    ASSERT_TRUE(exact);
    question.method = Method::kSampled;
    question.sampling.standard_error = 0;
    const auto asked = static_cast<double>(question.sampling.trials);
    const std::size_t players = exact->players.size();
    double trials = 0, squares = 0;
    std::vector<std::vector<double>> held(players);
    for (int seed = 1; seed <= kSeeds; ++seed) {
      question.seed = static_cast<std::uint64_t>(seed);
      const Result<EquityAnswer> sampled = Calculate(question);
      ASSERT_TRUE(sampled);
      ASSERT_EQ(sampled->solver, kInPools);
      EXPECT_NEAR(sampled->cases.Value(), 1.2 * asked, 0.5 * asked);
      trials += sampled->cases.Value();
      for (std::size_t i = 0; i < players; ++i) {
        const PlayerAnswer& player = sampled->players[i];
        const double off = player.total.equity - exact->players[i].total.equity;
        EXPECT_LT(std::abs(off), 5 * *player.standard_error);
        squares += off * off / (*player.standard_error * *player.standard_error);
        held[i].resize(player.hands.size());
        for (std::size_t hand = 0; hand < player.hands.size(); ++hand) {
          held[i][hand] += player.hands[hand].outcome.cases.Value();
        }
      }
    }
    EXPECT_NEAR(squares / (kSeeds * static_cast<double>(players)), 1, 0.25);
    // Every hand as often as it should, a little further off than independent trials would be.
    for (std::size_t i = 0; i < players && question.detail.hands; ++i) {
      double chi_square = 0;
      for (std::size_t hand = 0; hand < held[i].size(); ++hand) {
        const double expected =
            trials * exact->players[i].hands[hand].outcome.cases.Value() / exact->cases.Value();
        const double off = held[i][hand] - expected;
        ASSERT_TRUE(expected > 0 || off == 0);
        if (expected > 0) chi_square += off * off / expected;
      }
      EXPECT_LT(chi_square, 3 * static_cast<double>(held[i].size()));
    }
  }
}

TEST(Sampling, EndsWithAReasonWhereRangesHardlyFit) {
  // Ten players of one deal, and of many hands beside it that have to fit as exactly.
  std::vector<int> cards = ListOf(RulesOf(Game::kOmaha).Deck());
  cards.resize(40);
  EquityQuestion question{.game = Game::kOmaha,
                          .players = RangesOf(Game::kOmaha, CardSet(cards), 10, 300),
                          .method = Method::kSampled,
                          .sampling = {.standard_error = 0, .trials = 10}};
  for (std::size_t i = 0; i < 10; ++i) {
    std::vector<WeightedHand> hands = ListOf(question.players[i]);
    hands.push_back({CardSet(std::span(cards).subspan(4 * i, 4))});
    question.players[i] = HandRange(Game::kOmaha, std::move(hands));
  }
  const Result<EquityAnswer> none = Calculate(question);
  ASSERT_FALSE(none);
  EXPECT_NE(none.error().text.find("no deal was found"), std::string::npos);
  // After more deals than it is given for an error.
  question = PooledQuestions()[0];
  question.method = Method::kSampled;
  question.sampling = {.standard_error = 1e-6};
  const Result<Calculation> plan = Plan(question);
  ASSERT_TRUE(plan);
  Sums sums = plan->NewSums();
  plan->Do(0, 16, sums);
  EXPECT_FALSE(plan->Enough(16, sums));
  sums.numbers[SumsLayout::kAttempts] += std::int64_t{1} << 32;
  EXPECT_TRUE(plan->Enough(16, sums));
  const Result<EquityAnswer> rough = plan->Answer(sums);
  ASSERT_TRUE(rough);
  EXPECT_NE(rough->reason.find("standard error is larger than asked for"), std::string::npos);
}

// --- steps ---

TEST(Calculation, StepsInAnyOrderAndPartsGiveTheSameBytes) {
  EquityQuestion question{.players = {Holdings("TT+,AK"), Holdings("99+"), Holdings("AQs+,KQs")},
                          .board = Cards("2c7dTh"),
                          .method = Method::kExact,
                          .detail = {.hands = true, .made = true},
                          .sampling = {.standard_error = 0, .trials = 30000}};
  std::vector<EquityQuestion> questions(2, question);
  questions[1].method = Method::kSampled;
  questions.push_back(PooledQuestions()[2]);
  questions[2].method = Method::kSampled;
  questions[2].sampling = {.standard_error = 0, .trials = 20000};
  // Steps of these take off what the first one adds.
  const auto ask = [&](Game game, const char* first, const char* second, const char* board) {
    questions.push_back(
        {.game = game,
         .players = {ReadRange(game, first).value().range, ReadRange(game, second).value().range},
         .board = Cards(board),
         .method = Method::kExact,
         .detail = {.hands = true}});
  };
  ask(Game::kOmaha, "AsKsQhJh", "AAxx", "2c7dTh");
  ask(Game::kOmahaHighLow, "AA2x", "A23x", "2c7dTh");
  for (const EquityQuestion& of : questions) {
    const Result<Calculation> plan = Plan(of);
    ASSERT_TRUE(plan);
    ASSERT_GT(plan->steps(), 3);
    Sums whole = plan->NewSums();
    plan->Do(0, plan->steps(), whole);
    EXPECT_TRUE(plan->Enough(plan->steps(), whole));
    // From behind, each step to sums of its own, through bytes.
    Sums parts = plan->NewSums();
    for (std::int64_t step = plan->steps(); step-- > 0;) {
      Sums part = plan->NewSums();
      plan->Do(step, step + 1, part);
      parts.Add(plan->ReadSums(part.Bytes()).value());
    }
    EXPECT_EQ(parts.Bytes(), whole.Bytes());
    EXPECT_FALSE(plan->ReadSums(whole.Bytes() + "x"));
    if (of.method != Method::kSampled) continue;
    // Numbers that trials cannot have: an error worked out from them would not fit.
    const SumsLayout layout(*Check(of));
    for (const std::size_t place : {SumsLayout::kCases, SumsLayout::kPoolSquares,
                                    layout.Total(0).points(), layout.Squares(1)}) {
      Sums damaged = whole;
      damaged.numbers[place] = Int128{1} << 100;
      EXPECT_FALSE(plan->ReadSums(damaged.Bytes())) << place;
      damaged.numbers[place] = -1;
      EXPECT_FALSE(plan->ReadSums(damaged.Bytes())) << place;
    }
    Sums pool = whole;
    pool.numbers[SumsLayout::kPoolSquares] = 1;
    pool.numbers[layout.Squares(1)] = Int128{1} << 100;
    EXPECT_FALSE(plan->ReadSums(pool.Bytes()));
  }
}

TEST(Calculation, AStoppedCountIsNoNumberAndAStoppedSampleIsOne) {
  EquityQuestion question{.players = std::vector(3, HandRange::Every(Game::kHoldem)),
                          .board = Cards("2c7dTh"),
                          .method = Method::kExact};
  const auto stop = [](std::int64_t done, std::int64_t) { return done < 1; };
  const Result<EquityAnswer> count = Calculate(question, stop);
  ASSERT_FALSE(count);
  EXPECT_EQ(count.error().code, ErrorCode::kStopped);
  EXPECT_NE(count.error().text.find("stopped after 1 of "), std::string::npos);
  question.method = Method::kSampled;
  const Result<EquityAnswer> sample = Calculate(question, stop);
  ASSERT_TRUE(sample);
  EXPECT_EQ(sample->cases.units, 4096);
}

TEST(Calculation, AutoCountsWhatIsLittleWorkAndSamplesTheRest) {
  EquityQuestion question{.players = {Hand("AhKd"), HandRange::Every(Game::kHoldem)},
                          .board = Cards("2c7dTh")};
  const Result<Calculation> little = Plan(question);
  ASSERT_TRUE(little);
  EXPECT_EQ(little->method(), Method::kExact);
  question.players.assign(4, HandRange::Every(Game::kHoldem));
  const Result<Calculation> much = Plan(question);
  ASSERT_TRUE(much);
  EXPECT_EQ(much->method(), Method::kSampled);
  // Sums of ten players with fine weights would not fit.
  std::vector<WeightedHand> fine;
  for (const WeightedHand& hand : ListOf(HandRange::Every(Game::kHoldem))) {
    fine.push_back({hand.cards, 9999 - static_cast<int>(fine.size() % 2)});
  }
  question = {.players = std::vector<HandRange>(10, HandRange(Game::kHoldem, fine)),
              .method = Method::kExact};
  EXPECT_FALSE(Plan(question));
  question.method = Method::kAuto;
  question.exact_budget = std::numeric_limits<double>::infinity();
  const Result<Calculation> fine_plan = Plan(question);
  ASSERT_TRUE(fine_plan);
  EXPECT_EQ(fine_plan->method(), Method::kSampled);
}

}  // namespace
}  // namespace pokermath
