// Evaluators on random seven-card hands. "Plain" is the best of 21 five-card subsets.

#include "pokermath/evaluators.h"

#include <benchmark/benchmark.h>

#include <algorithm>

#include "bench/cards.h"
#include "eval/batch.h"

namespace pokermath {
namespace {

// Small enough to lie in the second-level cache: what is timed is the evaluator.
constexpr std::size_t kHands = 1 << 14;

void CountHands(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kHands));
}

std::vector<int> RandomWords() {
  const CPokerDeck deck;
  std::vector<int> words;
  for (const std::uint8_t card : RandomHands(kHands)) words.push_back(deck[card]);
  return words;
}

int BestOf21(const int* words) {
  int best = 9999;
  for (int left_out1 = 0; left_out1 < 7; ++left_out1) {
    for (int left_out2 = left_out1 + 1; left_out2 < 7; ++left_out2) {
      int five[5];
      int size = 0;
      for (int i = 0; i < 7; ++i) {
        if (i != left_out1 && i != left_out2) five[size++] = words[i];
      }
      best = std::min(best, eval_5hand(five));
    }
  }
  return best;
}

void BM_SevenCardsPlain(benchmark::State& state) {
  const std::vector<int> words = RandomWords();
  for (auto _ : state) {
    int sum = 0;
    for (std::size_t i = 0; i < kHands; ++i) sum += BestOf21(&words[7 * i]);
    benchmark::DoNotOptimize(sum);
  }
  CountHands(state);
}
BENCHMARK(BM_SevenCardsPlain)->Unit(benchmark::kMillisecond);

void BM_Eval7Hand(benchmark::State& state) {
  std::vector<int> words = RandomWords();
  for (auto _ : state) {
    int sum = 0;
    for (std::size_t i = 0; i < kHands; ++i) sum += eval_7hand(&words[7 * i]);
    benchmark::DoNotOptimize(sum);
  }
  CountHands(state);
}
BENCHMARK(BM_Eval7Hand)->Unit(benchmark::kMillisecond);

void BM_EvaluateCards(benchmark::State& state) {
  const std::vector<std::uint8_t> cards = RandomHands(kHands);
  for (auto _ : state) {
    int sum = 0;
    for (std::size_t i = 0; i < kHands; ++i) sum += EvaluateCards<7>(&cards[7 * i]);
    benchmark::DoNotOptimize(sum);
  }
  CountHands(state);
}
BENCHMARK(BM_EvaluateCards)->Unit(benchmark::kMillisecond);

void BM_EvaluateBatch(benchmark::State& state) {
  const std::vector<std::uint8_t> cards = RandomHands(kHands);
  const Isa isa = static_cast<Isa>(state.range(0));
  if (isa > BestIsa()) state.SkipWithError("this machine lacks the instructions");
  std::vector<std::uint16_t> values(kHands);
  for (auto _ : state) {
    EvaluateBatch(isa, cards.data(), kHands, values.data());
    benchmark::DoNotOptimize(values.data());
    benchmark::ClobberMemory();
  }
  CountHands(state);
}
BENCHMARK(BM_EvaluateBatch)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace pokermath
