// Questions to the calculator, planned and answered on one core. "Plain" is its plain enumeration
// of the same question.

#include "pokermath/calculator.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <span>
#include <string>

#include "calculator/solvers.h"
#include "kernels/board_sweep.h"
#include "kernels/omaha_sweep.h"
#include "kernels/three_way_table.h"
#include "kernels/trials.h"
#include "pokermath/cards.h"

namespace pokermath {
namespace {

HandRange RangeOf(Game game, std::string_view text) {
  if (text == "random") return HandRange::Every(game);
  if (RulesOf(game).hand_size == 2) {
    const CardsResult cards = ParseCards(text);
    if (cards.error.empty()) return HandRange::Of(game, CardSet(cards.cards));
    return HandRange(game, ParseRange(text).range);
  }
  const CardsResult cards = ParseCards(text);
  if (cards.error.empty()) return HandRange::Of(game, CardSet(cards.cards));
  if (RulesOf(game).hand_size == 4) return HandRange(game, ParseOmahaRange<4>(text).range);
  return HandRange(game, ParseOmahaRange<5>(text).range);
}

// Weights of many kinds.
HandRange Weighted(const HandRange& range, std::size_t player) {
  std::vector<WeightedHand> hands(range.hands().begin(), range.hands().end());
  for (std::size_t i = 0; i < hands.size(); ++i) {
    hands[i].weight = 1 + static_cast<int>((i * 7919 + player * 31) % kWholeWeight);
  }
  return HandRange(range.game(), std::move(hands));
}

EquityQuestion QuestionOf(std::initializer_list<const char*> players, const char* board,
                          Game game = Game::kHoldem) {
  EquityQuestion question{.game = game, .board = CardSet(ParseCards(board).cards)};
  for (const char* player : players) question.players.push_back(RangeOf(game, player));
  question.method = Method::kExact;
  question.detail.hands = RulesOf(game).hand_size == 2 && players.size() == 2;
  return question;
}

EquityQuestion ByHand(EquityQuestion question) {
  question.detail.hands = true;
  return question;
}

void Answer(benchmark::State& state, const EquityQuestion& question) {
  for (auto _ : state) benchmark::DoNotOptimize(Calculate(question));
}

void Count(benchmark::State& state, const EquityQuestion& question, decltype(Solver::start) start) {
  const auto checked = std::make_shared<const CheckedQuestion>(*Check(question));
  const std::unique_ptr<const Work> work = start(checked);
  std::vector<Int128> sums(SumsLayout(*checked).size());
  for (auto _ : state) {
    for (std::int64_t step = 0; step < work->steps(); ++step) work->Do(step, sums);
  }
}

void BM_Calculator(benchmark::State& state, const EquityQuestion& question) {
  Answer(state, question);
}
void BM_CalculatorPlain(benchmark::State& state, const EquityQuestion& question) {
  Count(state, question, StartPlain);
}
// Without the table of all matchups.
void BM_CalculatorByClasses(benchmark::State& state, const EquityQuestion& question) {
  Count(state, question, StartClasses);
}

EquityQuestion WeightedQuestion(std::initializer_list<const char*> players, const char* board) {
  EquityQuestion question = QuestionOf(players, board);
  for (std::size_t i = 0; i < question.players.size(); ++i) {
    question.players[i] = Weighted(question.players[i], i);
  }
  return question;
}

EquityQuestion NextQuestion(const char* board) {
  EquityQuestion question = QuestionOf({"15%", "15%"}, board);
  question.detail = {.next = true};
  return question;
}

const EquityQuestion kTwoHands = QuestionOf({"AhKd", "7s7c"}, "");
const EquityQuestion kPreflop = QuestionOf({"15%", "15%"}, "");
const EquityQuestion kRandomPreflop = QuestionOf({"random", "random"}, "");
const EquityQuestion kWeightedPreflop = WeightedQuestion({"15%", "15%"}, "");
const EquityQuestion kFlop = WeightedQuestion({"15%", "15%"}, "2c7dTh");
const EquityQuestion kSuitedFlop = WeightedQuestion({"15%", "15%"}, "2c7cTc");
const EquityQuestion kTurn = WeightedQuestion({"15%", "15%"}, "2c7dThJs");
const EquityQuestion kRiver = WeightedQuestion({"15%", "15%"}, "2c7dThJs3d");
const EquityQuestion kRandomFlop = QuestionOf({"random", "random"}, "2c7dTh");
const EquityQuestion kByFlops = NextQuestion("");
const EquityQuestion kByTurns = NextQuestion("2c7dTh");
const EquityQuestion kThreeHands = QuestionOf({"AhKd", "7s7c", "QhJh"}, "");
const EquityQuestion kSixHands = QuestionOf({"AhKd", "7s7c", "QhJh", "2c2d", "9h8h", "AsTs"}, "");
const EquityQuestion kTenHands = QuestionOf(
    {"AhKd", "7s7c", "QhJh", "2c2d", "9h8h", "AsTs", "QdJd", "AcKc", "5s5h", "KsQs"}, "");
const EquityQuestion kThreeHandsFlop = QuestionOf({"AhKd", "7s7c", "QhJh"}, "2c7dTh");
const EquityQuestion kThreeRangesPreflop = QuestionOf({"15%", "15%", "15%"}, "");
const EquityQuestion kThreeRangesFlop = QuestionOf({"15%", "15%", "15%"}, "2c7dTh");
const EquityQuestion kThreeRangesTurn = QuestionOf({"15%", "15%", "15%"}, "2c7dThJs");
const EquityQuestion kThreeRangesRiver = QuestionOf({"15%", "15%", "15%"}, "2c7dThJs3d");
const EquityQuestion kThreeWeightedFlop = WeightedQuestion({"15%", "15%", "15%"}, "2c7dTh");
const EquityQuestion kThreeWeightedTurn = WeightedQuestion({"15%", "15%", "15%"}, "2c7dThJs");
const EquityQuestion kThreeWeightedRiver = WeightedQuestion({"15%", "15%", "15%"}, "2c7dThJs3d");

// The strongest 10 % of Omaha hands with weights of many kinds, every hand of both. One in three
// hundred of them plainly.
EquityQuestion OmahaQuestion(const char* board, Game game = Game::kOmaha) {
  EquityQuestion question = QuestionOf({"10%", "10%"}, board, game);
  for (HandRange& range : question.players) range = Weighted(range, 0);
  question.detail.hands = true;
  return question;
}
EquityQuestion OnBoard(EquityQuestion question, const char* board) {
  question.board = CardSet(ParseCards(board).cards);
  return question;
}
// Of three players, with weights that differ.
EquityQuestion ThreeOmahaQuestion(const char* board) {
  EquityQuestion question = OmahaQuestion(board);
  question.players.push_back(question.players[0]);
  for (std::size_t i = 0; i < 3; ++i) question.players[i] = Weighted(question.players[i], i);
  return question;
}
EquityQuestion FewOf(EquityQuestion question) {
  for (HandRange& range : question.players) {
    std::vector<WeightedHand> few;
    for (std::size_t i = 0; i < range.size(); i += 300) few.push_back(range.hands()[i]);
    range = HandRange(range.game(), std::move(few));
  }
  return question;
}

const EquityQuestion kOmahaRiver = OmahaQuestion("2c7dThJs3d");
const EquityQuestion kOmahaFlushRiver = OmahaQuestion("2c7cTcJs3d");
const EquityQuestion kOmahaTurn = OmahaQuestion("2c7dThJs");
const EquityQuestion kOmahaFlop = OmahaQuestion("2c7dTh");
const EquityQuestion kHighLowTurn = OmahaQuestion("2c7dThJs", Game::kOmahaHighLow);
const EquityQuestion kFiveCardsRiver = OmahaQuestion("2c7dThJs3d", Game::kOmaha5);
const EquityQuestion kFiveCardsFlushRiver = OnBoard(kFiveCardsRiver, "2c7cTcJs3d");
const EquityQuestion kFiveCardsTurn = OnBoard(kFiveCardsRiver, "2c7dThJs");
const EquityQuestion kFiveCardsFlop = OnBoard(kFiveCardsRiver, "2c7dTh");
const EquityQuestion kFewFiveCardsRiver = FewOf(kFiveCardsRiver);
const EquityQuestion kFewOmahaRiver = FewOf(kOmahaRiver);
// The plain loop beside it is BM_OmahaAgainstRangePlain.
const EquityQuestion kOmahaHandBeforeFlop = QuestionOf({"AhAdKhKd", "10%"}, "", Game::kOmaha);
const EquityQuestion kHighLowHandBeforeFlop =
    QuestionOf({"AhAdKhKd", "10%"}, "", Game::kOmahaHighLow);

#define POKERMATH_ANSWERED(name) \
  BENCHMARK_CAPTURE(BM_Calculator, name, k##name)->Unit(benchmark::kMicrosecond)
#define POKERMATH_PLAIN(name) \
  BENCHMARK_CAPTURE(BM_CalculatorPlain, name, k##name)->Unit(benchmark::kMicrosecond)

#define POKERMATH_BY_CLASSES(name) \
  BENCHMARK_CAPTURE(BM_CalculatorByClasses, name, k##name)->Unit(benchmark::kMicrosecond)

POKERMATH_ANSWERED(TwoHands);
POKERMATH_PLAIN(TwoHands);
POKERMATH_ANSWERED(Preflop);
POKERMATH_BY_CLASSES(Preflop);
POKERMATH_ANSWERED(WeightedPreflop);
POKERMATH_ANSWERED(RandomPreflop);
POKERMATH_BY_CLASSES(RandomPreflop);
POKERMATH_ANSWERED(Flop);
POKERMATH_PLAIN(Flop);
POKERMATH_ANSWERED(SuitedFlop);
POKERMATH_ANSWERED(Turn);
POKERMATH_PLAIN(Turn);
POKERMATH_ANSWERED(River);
POKERMATH_PLAIN(River);
POKERMATH_ANSWERED(RandomFlop);
POKERMATH_ANSWERED(ByFlops);
POKERMATH_ANSWERED(ByTurns);
POKERMATH_PLAIN(ByTurns);
POKERMATH_ANSWERED(ThreeHands);
POKERMATH_PLAIN(ThreeHands);
POKERMATH_ANSWERED(SixHands);
POKERMATH_PLAIN(SixHands);
POKERMATH_ANSWERED(TenHands);
POKERMATH_ANSWERED(ThreeHandsFlop);
POKERMATH_ANSWERED(ThreeRangesPreflop);
POKERMATH_ANSWERED(ThreeRangesFlop);
POKERMATH_ANSWERED(ThreeRangesTurn);
POKERMATH_ANSWERED(ThreeRangesRiver);
POKERMATH_ANSWERED(ThreeWeightedFlop);
POKERMATH_ANSWERED(ThreeWeightedTurn);
POKERMATH_ANSWERED(ThreeWeightedRiver);
POKERMATH_PLAIN(ThreeWeightedRiver);

// From the table of all matchups of three hands, which `pokermath tables build three-way` makes.
// The same without it: ThreeRangesPreflop above.
void BM_ThreeWay(benchmark::State& state, const EquityQuestion& question) {
  if (ThreeWayTable::Get() == nullptr) return state.SkipWithError("there is no table three-way");
  Count(state, question, StartThreeWay);
}
BENCHMARK_CAPTURE(BM_ThreeWay, 5Percent, QuestionOf({"5%", "5%", "5%"}, ""))
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ThreeWay, 15Percent, kThreeRangesPreflop)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ThreeWay, 15PercentByHand, ByHand(kThreeRangesPreflop))
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ThreeWay, 15PercentWeighted, WeightedQuestion({"15%", "15%", "15%"}, ""))
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ThreeWay, 30Percent, QuestionOf({"30%", "30%", "30%"}, ""))
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ThreeWay, Random, QuestionOf({"random", "random", "random"}, ""))
    ->Unit(benchmark::kMillisecond);

// The table itself: a triple of ranks after the other, at all instructions; it has 129,766.
void BM_CountThreeWay(benchmark::State& state) {
  const auto isa = static_cast<Isa>(state.range(0));
  if (isa > BestIsa()) return state.SkipWithError("this machine has no such instructions");
  std::int64_t number = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CountThreeWay(isa, RankTripleOf(number)));
    number = (number + 9973) % kRankTriples;
  }
}
BENCHMARK(BM_CountThreeWay)->ArgName("isa")->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

// The kernel alone, for every hand of both ranges.
void BM_BoardSweep(benchmark::State& state, const EquityQuestion& question) {
  const auto isa = static_cast<Isa>(state.range(0));
  if (isa > BestIsa()) return state.SkipWithError("this machine has no such instructions");
  std::vector<WeightedPair> hands[2];
  std::vector<Tally> tallies[2];
  for (std::size_t side = 0; side < 2; ++side) {
    const HandRange left = question.players[side].Without(question.board);
    for (const WeightedHand& hand : left.hands()) {
      hands[side].push_back({*hand.cards.begin(), *++hand.cards.begin(), hand.weight});
    }
    tallies[side].resize(hands[side].size());
  }
  const CardSet live = RulesOf(question.game).Deck() - question.board;
  for (auto _ : state) {
    BoardSweep sweep(isa, RulesOf(question.game), {hands[0], hands[1]}, question.board);
    sweep.Count({}, live, 5 - question.board.size());
    sweep.AddTo(1, {tallies[0], tallies[1]});
    benchmark::DoNotOptimize(tallies[0].data());
  }
}

#define POKERMATH_SWEPT(name)                     \
  BENCHMARK_CAPTURE(BM_BoardSweep, name, k##name) \
      ->ArgName("isa")                            \
      ->DenseRange(0, 2)                          \
      ->Unit(benchmark::kMicrosecond)

POKERMATH_SWEPT(Flop);
POKERMATH_SWEPT(SuitedFlop);
POKERMATH_SWEPT(Turn);
POKERMATH_SWEPT(River);
POKERMATH_SWEPT(RandomFlop);
POKERMATH_ANSWERED(OmahaRiver);
POKERMATH_ANSWERED(OmahaFlushRiver);
POKERMATH_ANSWERED(OmahaTurn);
POKERMATH_ANSWERED(OmahaFlop);
POKERMATH_ANSWERED(HighLowTurn);
POKERMATH_ANSWERED(FiveCardsRiver);
POKERMATH_ANSWERED(FiveCardsFlushRiver);
POKERMATH_ANSWERED(FiveCardsTurn);
POKERMATH_ANSWERED(OmahaHandBeforeFlop);
POKERMATH_ANSWERED(HighLowHandBeforeFlop);
BENCHMARK_CAPTURE(BM_Calculator, ThreeOmahaRiver, ThreeOmahaQuestion("2c7dThJs3d"))
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Calculator, FewThreeOmahaRiver, FewOf(ThreeOmahaQuestion("2c7dThJs3d")))
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_CalculatorPlain, FewThreeOmahaRiver, FewOf(ThreeOmahaQuestion("2c7dThJs3d")))
    ->Unit(benchmark::kMillisecond);
POKERMATH_ANSWERED(FewOmahaRiver);
POKERMATH_PLAIN(FewOmahaRiver);
POKERMATH_ANSWERED(FewFiveCardsRiver);
POKERMATH_PLAIN(FewFiveCardsRiver);
// Takes a quarter of a minute, so it has to be asked for.
[[maybe_unused]] const benchmark::internal::Benchmark* const kLong =
    std::getenv("POKERMATH_LONG_BENCHMARKS") == nullptr
        ? nullptr
        : benchmark::RegisterBenchmark("BM_Calculator/FiveCardsFlop", BM_Calculator, kFiveCardsFlop)
              ->Unit(benchmark::kMicrosecond);

// Boards alone, without reading the question and setting up.
template <std::size_t hand_size>
void CountBoard(benchmark::State& state, const EquityQuestion& question) {
  const CheckedQuestion checked = *Check(question);
  const OmahaTensors<hand_size> ranges(checked.players()[0].range.hands(),
                                       checked.players()[1].range.hands());
  OmahaSweep<hand_size> sweep(BestIsa(), ranges, checked.rules().high_low);
  for (auto _ : state) sweep.Count(question.board);
}
void BM_OmahaSweep(benchmark::State& state, const EquityQuestion& question) {
  CountBoard<4>(state, question);
}
void BM_FiveCardsSweep(benchmark::State& state, const EquityQuestion& question) {
  CountBoard<5>(state, question);
}
BENCHMARK_CAPTURE(BM_OmahaSweep, River, kOmahaRiver)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_OmahaSweep, HighLowRiver, OmahaQuestion("2c7dThJs3d", Game::kOmahaHighLow))
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_OmahaSweep, FlushRiver, kOmahaFlushRiver)->Unit(benchmark::kMicrosecond);

BENCHMARK_CAPTURE(BM_FiveCardsSweep, River, kFiveCardsRiver)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_FiveCardsSweep, HighLowRiver,
                  OmahaQuestion("2c7dThJs3d", Game::kOmaha5HighLow))
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_FiveCardsSweep, FlushRiver, kFiveCardsFlushRiver)
    ->Unit(benchmark::kMicrosecond);

// Trials a second.
void BM_Sampled(benchmark::State& state, EquityQuestion question) {
  constexpr std::int64_t kTrials = 1 << 20;
  question.method = Method::kSampled;
  question.detail = {};
  question.sampling = {.standard_error = 0, .trials = kTrials};
  for (auto _ : state) benchmark::DoNotOptimize(Calculate(question));
  state.SetItemsProcessed(state.iterations() * kTrials);
}

// Trials a second where they are dealt in pools. The label says how many independent ones each of
// them is worth: so many would have the same standard error. No counter, of which reports as CSV
// want the same ones in every row.
void BM_SampledInPools(benchmark::State& state, EquityQuestion question) {
  constexpr std::int64_t kTrials = 1 << 20;
  question.method = Method::kSampled;
  question.detail = {};
  question.sampling = {.standard_error = 0, .trials = kTrials};
  double trials = 0, effective = 0;
  for (auto _ : state) {
    const EquityAnswer answer = *Calculate(question);
    const PlayerAnswer& player = answer.players[0];
    double squares = 0;
    for (std::size_t k = 0; k < kMostPlayers; ++k) {
      squares += player.shared[k].Value() / static_cast<double>((k + 1) * (k + 1));
    }
    const double cases = answer.cases.Value(), equity = player.total.equity;
    const double error = player.standard_error.value_or(1);
    trials += cases;
    effective += (squares / cases - equity * equity) / (error * error);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(trials));
  state.SetLabel("each worth " + std::to_string(effective / trials));
}

// The same card by card and trial by trial.
void BM_SampledPlain(benchmark::State& state, const char* hand, int players) {
  constexpr std::int64_t kTrials = 1 << 20;
  const std::vector<int> cards = ParseCards(hand).cards;
  HoldemTrials trials(std::span<const int, 2>(cards.data(), 2), {}, players);
  std::mt19937_64 random(1);
  std::uniform_int_distribution<int> card(0, 51);
  for (auto _ : state) {
    std::int64_t shares = 0;
    for (std::int64_t i = 0; i < kTrials; ++i) shares += trials.Deal([&] { return card(random); });
    benchmark::DoNotOptimize(shares);
  }
  state.SetItemsProcessed(state.iterations() * kTrials);
}

// To a standard error of 0.05 %.
void BM_SampledToError(benchmark::State& state, EquityQuestion question) {
  question.method = Method::kSampled;
  question.detail = {};
  Answer(state, question);
}

EquityQuestion OmahaRanges(std::size_t players, const char* range, const char* board,
                           Game game = Game::kOmaha) {
  EquityQuestion question{.game = game, .board = CardSet(ParseCards(board).cards)};
  question.players.assign(players, RangeOf(game, range));
  return question;
}
const EquityQuestion kSixRanges = QuestionOf({"15%", "15%", "15%", "15%", "15%", "15%"}, "");

BENCHMARK_CAPTURE(BM_Sampled, TwoHands, QuestionOf({"AhKd", "7s7c"}, ""));
BENCHMARK_CAPTURE(BM_Sampled, AgainstRandom, QuestionOf({"AhKd", "random"}, ""));
BENCHMARK_CAPTURE(BM_SampledPlain, AgainstRandom, "AhKd", 2);
BENCHMARK_CAPTURE(BM_Sampled, SixHands, kSixHands);
BENCHMARK_CAPTURE(BM_Sampled, AgainstFiveRandom,
                  QuestionOf({"AhKd", "random", "random", "random", "random", "random"}, ""));
BENCHMARK_CAPTURE(BM_Sampled, SixRanges, kSixRanges);
BENCHMARK_CAPTURE(BM_SampledToError, SixRanges, kSixRanges)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Sampled, TwoOmahaRanges, QuestionOf({"10%", "10%"}, "", Game::kOmaha));
BENCHMARK_CAPTURE(BM_Sampled, ThreeOmahaRanges,
                  QuestionOf({"10%", "10%", "10%"}, "", Game::kOmaha));
BENCHMARK_CAPTURE(BM_SampledInPools, SixOmahaRanges, OmahaRanges(6, "10%", ""));
BENCHMARK_CAPTURE(BM_SampledInPools, SixOmahaRangesRiver, OmahaRanges(6, "10%", "2c7dThJs3d"));
BENCHMARK_CAPTURE(BM_SampledInPools, SixOmaha5Ranges, OmahaRanges(6, "10%", "", Game::kOmaha5));
BENCHMARK_CAPTURE(BM_SampledInPools, TenTightRanges,
                  QuestionOf({"4%", "4%", "4%", "4%", "4%", "4%", "4%", "4%", "4%", "4%"}, ""));

}  // namespace
}  // namespace pokermath
