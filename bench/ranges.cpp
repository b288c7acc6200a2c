// A hand against the strongest 15 % of hands, street by street, and the look-up of a range. "Plain"
// evaluates every holding by itself on every board.

#include <benchmark/benchmark.h>
#include <omp.h>

#include <algorithm>

#include "pokermath/cards.h"
#include "pokermath/equity.h"
#include "pokermath/evaluators.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

struct Question {
  std::vector<int> hand = ParseCards("AhKd").cards;
  std::vector<int> board = ParseCards("2c7dThJs").cards;
  Spec range = ParseRange("15%").range;
  PokerLogic logic;
};

void BM_RangeOnFlopPlain(benchmark::State& state) {
  Question question;
  const auto is_taken = [&](const std::vector<int>& cards, int card) {
    return std::ranges::count(cards, card) != 0;
  };
  for (auto _ : state) {
    double score = 0;
    std::vector<int> seven(question.board.begin(), question.board.begin() + 3);
    seven.resize(7);
    for (int turn = 0; turn < 51; ++turn) {
      for (int river = turn + 1; river < 52; ++river) {
        seven[3] = turn;
        seven[4] = river;
        std::copy(question.hand.begin(), question.hand.end(), seven.begin() + 5);
        if (turn == river || is_taken(question.hand, turn) || is_taken(question.hand, river))
          continue;
        const int value = EvaluateCards<7>(seven.data());
        for (const auto& [first, second] : question.range.combinations()) {
          if (is_taken(seven, first) || is_taken(seven, second)) continue;
          seven[5] = first;
          seven[6] = second;
          const int other = EvaluateCards<7>(seven.data());
          score += value > other ? 1.0 : value == other ? 0.5 : 0.0;
          std::copy(question.hand.begin(), question.hand.end(), seven.begin() + 5);
        }
      }
    }
    benchmark::DoNotOptimize(score);
  }
}
BENCHMARK(BM_RangeOnFlopPlain)->Unit(benchmark::kMicrosecond);

void BM_RangeOnFlop(benchmark::State& state) {
  Question question;
  for (auto _ : state) {
    benchmark::DoNotOptimize(question.logic.getProbabilityOfWinBySpectrWithFlop(
        question.hand.data(), question.board.data(), question.range));
  }
}
BENCHMARK(BM_RangeOnFlop)->Unit(benchmark::kMicrosecond);

void BM_RangeOnTurn(benchmark::State& state) {
  Question question;
  for (auto _ : state) {
    benchmark::DoNotOptimize(question.logic.getProbabilityOfWinBySpectrWithFlopAndTurn(
        question.hand.data(), question.board.data(), question.range));
  }
}
BENCHMARK(BM_RangeOnTurn)->Unit(benchmark::kMicrosecond);

void BM_EveryHandOnFlop(benchmark::State& state) {
  const char* const flops[3] = {"2c7dTh", "2c7cTh", "2c7cTc"};
  const std::vector<int> flop = ParseCards(flops[state.range(0)]).cards;
  const Question question;
  for (auto _ : state) benchmark::DoNotOptimize(HoldemEveryHandVsRange(question.range, flop));
}
BENCHMARK(BM_EveryHandOnFlop)->ArgName("flop")->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

void BM_RangeOnEmptyBoard(benchmark::State& state) {
  Question question;
  if (state.range(0) == 100) question.range.MakeRandom();
  omp_set_num_threads(1);
  for (auto _ : state) {
    benchmark::DoNotOptimize(question.logic.getProbabilityOfWinBySpectrWithNoBoard(
        question.hand.data(), question.range));
  }
}
BENCHMARK(BM_RangeOnEmptyBoard)
    ->ArgName("percent")
    ->Arg(15)
    ->Arg(100)
    ->Unit(benchmark::kMicrosecond);

void BM_RangeToFlopOrTurn(benchmark::State& state) {
  Question question;
  for (auto _ : state) {
    benchmark::DoNotOptimize(question.logic.getProbOfWinBySpectrToFlopOrTurn(
        question.hand.data(), nullptr, 0, question.range, static_cast<int>(state.range(0))));
  }
}
BENCHMARK(BM_RangeToFlopOrTurn)->ArgName("board")->Arg(3)->Arg(4)->Unit(benchmark::kMicrosecond);

void BM_GetSpecByPercent(benchmark::State& state) {
  CStatSpectr tables;
  tables.InitEquil();
  Spec range;
  CString text;
  for (auto _ : state) {
    tables.GetSpecByPercent(100.0, range, text, 0);
    benchmark::DoNotOptimize(range);
  }
}
BENCHMARK(BM_GetSpecByPercent)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace pokermath
