// The short deck and the finite-state tables.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>

#include "bench/cards.h"
#include "contracts/holdem_tables.h"
#include "contracts/state_tables.h"
#include "pokermath/cards.h"
#include "pokermath/equity.h"
#include "pokermath/evaluators.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

constexpr std::size_t kHands = 1 << 14;

void LoadTables() {
  static const bool loaded = [] {
    const auto copy = [](const StateEntries& entries) {
      std::uint32_t* table = NewStates(entries.size());
      std::copy(entries.begin(), entries.end(), table);
      return table;
    };
    fsm5.five_cards = copy(BuildStates(kSixPlus5File));
    fsm5.seven_cards = copy(BuildStates(kSixPlus7File));
    return true;
  }();
  benchmark::DoNotOptimize(loaded);
}

template <typename Evaluate>
void MeasureHands(benchmark::State& state, int size, int lowest, Evaluate evaluate) {
  std::vector<int> hands = RandomHandsOf(kHands, size, lowest);
  for (auto _ : state) {
    int sum = 0;
    for (std::size_t i = 0; i < hands.size(); i += static_cast<std::size_t>(size)) {
      sum += evaluate(&hands[i]);
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kHands));
}

void BM_LookupFsm5(benchmark::State& state) { MeasureHands(state, 5, 0, LookupFsm5); }
BENCHMARK(BM_LookupFsm5)->Unit(benchmark::kMicrosecond);

void BM_ShortDeckSeven(benchmark::State& state) {
  LoadTables();
  MeasureHands(state, 7, 4, eval_rank7_via_fsm7);
}
BENCHMARK(BM_ShortDeckSeven)->Unit(benchmark::kMicrosecond);

void BM_EvaluateShortDeck(benchmark::State& state) {
  MeasureHands(state, 7, 4, [](const int* cards) { return EvaluateShortDeck(cards, 7); });
}
BENCHMARK(BM_EvaluateShortDeck)->Unit(benchmark::kMicrosecond);

void BM_BuildStates(benchmark::State& state) {
  const StateFile& file = state.range(0) == 5 ? kSixPlus5File : kSixPlus7File;
  for (auto _ : state) benchmark::DoNotOptimize(BuildStates(file));
}
BENCHMARK(BM_BuildStates)->ArgName("cards")->Arg(5)->Arg(7)->Unit(benchmark::kMillisecond);

void BM_BuildOmahaStates(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(BuildStates(kOmaha7File));
}
BENCHMARK(BM_BuildOmahaStates)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_GetRank7(benchmark::State& state) {
  MeasureHands(state, 9, 0, [](int* cards) { return get_rank7(cards, cards + 4); });
}
BENCHMARK(BM_GetRank7)->Unit(benchmark::kMicrosecond);

// Every board through the table of seven cards.
void BM_ShortDeckMatchupPlain(benchmark::State& state) {
  LoadTables();
  const std::vector<int> hands = ParseCards("AhKdQcJs").cards;
  std::vector<int> live;
  for (int card = 0; card < 52; ++card) {
    if (card % 13 >= 4 && std::ranges::count(hands, card) == 0) live.push_back(card);
  }
  for (auto _ : state) {
    double wins = 0;
    int one[7] = {hands[0], hands[1]};
    int two[7] = {hands[2], hands[3]};
    const auto deal = [&](auto& self, int place, std::size_t first) -> void {
      if (place == 7) {
        const int value1 = eval_rank7_via_fsm7(one);
        const int value2 = eval_rank7_via_fsm7(two);
        wins += value1 > value2 ? 1 : value1 == value2 ? 0.5 : 0;
        return;
      }
      for (std::size_t i = first; i < live.size(); ++i) {
        one[place] = two[place] = live[i];
        self(self, place + 1, i + 1);
      }
    };
    deal(deal, 2, 0);
    benchmark::DoNotOptimize(wins);
  }
}
BENCHMARK(BM_ShortDeckMatchupPlain)->Unit(benchmark::kMicrosecond);

void BM_ShortDeckMatchup(benchmark::State& state) {
  std::vector<int> hands = ParseCards("AhKdQcJs").cards;
  double wins, boards;
  for (auto _ : state) {
    getProbabilityOfWinWithNoBoard6Plus(&hands[0], &hands[2], wins, boards);
    benchmark::DoNotOptimize(wins);
  }
}
BENCHMARK(BM_ShortDeckMatchup)->Unit(benchmark::kMicrosecond);

void BM_ShortDeckAgainstEveryHand(benchmark::State& state) {
  std::vector<int> hand = ParseCards("AhKd").cards;
  const PokerLogic logic;
  int count, elapsed;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        logic.RiverEquityHandVsRandomOnPreFlop6Plus(hand.data(), count, elapsed));
  }
}
BENCHMARK(BM_ShortDeckAgainstEveryHand)->Unit(benchmark::kMicrosecond);

void BM_AllShortDeckMatchups(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(AllEquityRecords(Deck::kShort, Street::kRiver, {}));
  }
}
BENCHMARK(BM_AllShortDeckMatchups)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace pokermath
