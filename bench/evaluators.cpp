// Evaluators on random hands. "Plain" is the best of 21 five-card subsets, "Former" how it was done
// before. Sides are compared fairly with --benchmark_enable_random_interleaving=true.

#include "pokermath/evaluators.h"

#include <benchmark/benchmark.h>

#include <algorithm>

#include "bench/cards.h"
#include "bench/former_evaluators.h"
#include "eval/batch.h"
#include "eval/omaha_batch.h"
#include "eval/omaha_low.h"
#include "pokermath/hand_sum.h"

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

// Hands of `size` cards one at a time; `evaluate` takes a pointer to the first card.
template <typename Card, typename Evaluate>
void MeasureSingle(benchmark::State& state, int size, int lowest_rank, Evaluate evaluate) {
  const std::vector<int> codes = RandomHandsOf(kHands, size, lowest_rank);
  const std::vector<Card> cards(codes.begin(), codes.end());
  for (auto _ : state) {
    int sum = 0;
    for (std::size_t i = 0; i < cards.size(); i += static_cast<std::size_t>(size)) {
      sum += evaluate(&cards[i]);
    }
    benchmark::DoNotOptimize(sum);
  }
  CountHands(state);
}

using Byte = std::uint8_t;

template <int count>
void BM_FormerCards(benchmark::State& state) {
  const FormerTables& tables = FormerTables::Get();
  MeasureSingle<Byte>(state, count, 0,
                      [&](const Byte* cards) { return tables.Value<count>(cards); });
}
template <int count>
void BM_FormerInts(benchmark::State& state) {
  const FormerTables& tables = FormerTables::Get();
  MeasureSingle<int>(state, count, 0, [&](const int* cards) { return tables.Value<count>(cards); });
}
template <int count>
void BM_CardsOf(benchmark::State& state) {
  MeasureSingle<Byte>(state, count, 0,
                      [](const Byte* cards) { return EvaluateCards<count>(cards); });
}
template <int count>
void BM_IntsOf(benchmark::State& state) {
  MeasureSingle<int>(state, count, 0, [](const int* cards) { return EvaluateCards<count>(cards); });
}
BENCHMARK(BM_FormerCards<5>)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CardsOf<5>)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FormerCards<6>)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CardsOf<6>)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FormerCards<7>)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FormerInts<7>)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_IntsOf<7>)->Unit(benchmark::kMicrosecond);

void BM_EvaluateCards(benchmark::State& state) {
  MeasureSingle<Byte>(state, 7, 0, [](const Byte* cards) { return EvaluateCards<7>(cards); });
}
BENCHMARK(BM_EvaluateCards)->Unit(benchmark::kMicrosecond);

// A batch with the instructions of a level, which is the benchmark's argument.
template <typename Value, typename Evaluate>
void MeasureBatch(benchmark::State& state, Evaluate evaluate) {
  const Isa isa = static_cast<Isa>(state.range(0));
  if (isa > BestIsa()) state.SkipWithError("this machine lacks the instructions");
  std::vector<Value> values(kHands);
  for (auto _ : state) {
    evaluate(isa, values.data());
    benchmark::DoNotOptimize(values.data());
    benchmark::ClobberMemory();
  }
  CountHands(state);
}

std::vector<Byte> RandomBytes(int size, int lowest_rank) {
  const std::vector<int> codes = RandomHandsOf(kHands, size, lowest_rank);
  return {codes.begin(), codes.end()};
}

void BM_EvaluateBatch(benchmark::State& state) {
  const std::vector<Byte> cards = RandomBytes(7, 0);
  MeasureBatch<std::uint16_t>(state, [&](Isa isa, std::uint16_t* values) {
    EvaluateBatch(isa, 7, cards.data(), kHands, values);
  });
}
BENCHMARK(BM_EvaluateBatch)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

// Every seven-card hand, cards one at a time: a sum of words by hand on the tables of before, and
// HandSum.
struct FormerSum {
  const FormerTables* tables = &FormerTables::Get();
  std::uint64_t sum = CompactTables::kSuitStart;
  std::uint64_t cards = 0;

  FormerSum With(int card) const {
    return {tables, sum + tables->card_words[card], cards | std::uint64_t{1} << card};
  }
  int Evaluate() const { return tables->Value<7>(sum, cards); }
};

template <typename Sum>
void BM_AllHands(benchmark::State& state) {
  const Sum none;
  for (auto _ : state) {
    std::int64_t total = 0;
    for (int a = 0; a < 46; ++a) {
      const Sum one = none.With(a);
      for (int b = a + 1; b < 47; ++b) {
        const Sum two = one.With(b);
        for (int c = b + 1; c < 48; ++c) {
          const Sum three = two.With(c);
          for (int d = c + 1; d < 49; ++d) {
            const Sum four = three.With(d);
            for (int e = d + 1; e < 50; ++e) {
              const Sum five = four.With(e);
              for (int f = e + 1; f < 51; ++f) {
                const Sum six = five.With(f);
                for (int g = f + 1; g < 52; ++g) total += six.With(g).Evaluate();
              }
            }
          }
        }
      }
    }
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(state.iterations() * 133'784'560);
}
BENCHMARK(BM_AllHands<FormerSum>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AllHands<HandSum>)->Unit(benchmark::kMillisecond);

void BM_FormerShortDeck(benchmark::State& state) {
  const FormerShortDeck& values = FormerShortDeck::Get();
  MeasureSingle<int>(state, 7, 4, [&](const int* cards) { return values.Value(cards); });
}
BENCHMARK(BM_FormerShortDeck)->Unit(benchmark::kMicrosecond);

void BM_ShortDeckCards(benchmark::State& state) {
  MeasureSingle<Byte>(state, 7, 4, [](const Byte* cards) { return EvaluateShortDeck<7>(cards); });
}
BENCHMARK(BM_ShortDeckCards)->Unit(benchmark::kMicrosecond);

void BM_ShortDeckInts(benchmark::State& state) {
  MeasureSingle<int>(state, 7, 4, [](const int* cards) { return EvaluateShortDeck<7>(cards); });
}
BENCHMARK(BM_ShortDeckInts)->Unit(benchmark::kMicrosecond);

void BM_ShortDeckBatch(benchmark::State& state) {
  const std::vector<Byte> cards = RandomBytes(7, 4);
  MeasureBatch<std::uint16_t>(state, [&](Isa isa, std::uint16_t* values) {
    EvaluateShortDeckBatch(isa, 7, cards.data(), kHands, values);
  });
}
BENCHMARK(BM_ShortDeckBatch)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

// Omaha hands with a board each: the first `holes` of holes + 5 cards are the hand.
template <int holes>
void BM_FormerOmaha(benchmark::State& state) {
  MeasureSingle<int>(state, holes + 5, 0, [](const int* cards) {
    return FormerOmaha::Value<holes>(cards, cards + holes);
  });
}
template <int holes>
void BM_OmahaCards(benchmark::State& state) {
  MeasureSingle<Byte>(state, holes + 5, 0,
                      [](const Byte* cards) { return EvaluateOmaha<holes>(cards, cards + holes); });
}
template <int holes>
void BM_OmahaInts(benchmark::State& state) {
  MeasureSingle<int>(state, holes + 5, 0,
                     [](const int* cards) { return EvaluateOmaha<holes>(cards, cards + holes); });
}
template <int holes>
void BM_OmahaBatch(benchmark::State& state) {
  const std::vector<Byte> cards = RandomBytes(holes + 5, 0);
  std::vector<Byte> hands;
  std::vector<Byte> boards;
  for (auto card = cards.begin(); card != cards.end(); card += holes + 5) {
    hands.insert(hands.end(), card, card + holes);
    boards.insert(boards.end(), card + holes, card + holes + 5);
  }
  MeasureBatch<std::uint16_t>(state, [&](Isa isa, std::uint16_t* values) {
    EvaluateOmahaBatch(isa, holes, hands.data(), boards.data(), kHands, values);
  });
}
// Many hands on a board of three suits or of four cards of one.
template <int holes>
void BM_OmahaOneBoard(benchmark::State& state) {
  const std::vector<int> board =
      state.range(1) == 0 ? std::vector<int>{0, 14, 28, 42, 8} : std::vector<int>{0, 2, 4, 7, 35};
  const OmahaBoardValues values_of(board);
  std::vector<Byte> hands;
  const std::vector<int> cards = RandomHandsOf(kHands, holes + 5, 0);
  for (std::size_t hand = 0; hand < kHands; ++hand) {
    for (std::size_t i = 0; i < holes + 5 && hands.size() < (hand + 1) * holes; ++i) {
      const int card = cards[hand * (holes + 5) + i];
      if (std::ranges::count(board, card) == 0) hands.push_back(static_cast<Byte>(card));
    }
  }
  MeasureBatch<std::uint16_t>(state, [&](Isa isa, std::uint16_t* values) {
    OmahaBoardKernels::Evaluate(isa, values_of, holes, hands.data(), kHands, values);
  });
}
#define POKERMATH_OMAHA_BENCHMARKS(holes)                                         \
  BENCHMARK(BM_FormerOmaha<holes>)->Unit(benchmark::kMicrosecond);                \
  BENCHMARK(BM_OmahaCards<holes>)->Unit(benchmark::kMicrosecond);                 \
  BENCHMARK(BM_OmahaInts<holes>)->Unit(benchmark::kMicrosecond);                  \
  BENCHMARK(BM_OmahaBatch<holes>)->Arg(0)->Arg(2)->Unit(benchmark::kMicrosecond); \
  BENCHMARK(BM_OmahaOneBoard<holes>)                                              \
      ->ArgNames({"level", "flush"})                                              \
      ->ArgsProduct({{0, 2}, {0, 1}})                                             \
      ->Unit(benchmark::kMicrosecond)
POKERMATH_OMAHA_BENCHMARKS(4);
POKERMATH_OMAHA_BENCHMARKS(5);
POKERMATH_OMAHA_BENCHMARKS(6);

void BM_FormerOmahaLow(benchmark::State& state) {
  MeasureSingle<int>(state, 9, 0, [](const int* cards) {
    return BestOmahaLow({cards, 4}, {cards + 4, 5});
  });
}
BENCHMARK(BM_FormerOmahaLow)->Unit(benchmark::kMicrosecond);

void BM_OmahaLow(benchmark::State& state) {
  MeasureSingle<Byte>(state, 9, 0,
                      [](const Byte* cards) { return EvaluateOmahaLow<4>(cards, cards + 4); });
}
BENCHMARK(BM_OmahaLow)->Unit(benchmark::kMicrosecond);

void BM_SevenCardLow(benchmark::State& state) {
  MeasureSingle<Byte>(state, 7, 0, [](const Byte* cards) { return EvaluateLow<7>(cards); });
}
BENCHMARK(BM_SevenCardLow)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace pokermath
