// Omaha: best hands, hands against each other and against every hand.

#include "pokermath/omaha.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <set>
#include <string>

#include "bench/cards.h"
#include "eval/omaha_best.h"
#include "kernels/hole_cards.h"
#include "kernels/omaha_cliques.h"
#include "kernels/omaha_matchup.h"
#include "kernels/omaha_range.h"
#include "pokermath/cards.h"
#include "pokermath/omaha_ranges.h"
#include "pokermath/poker_logic.h"
#include "pokermath/ranges.h"
#include "ranges/omaha/hands.h"

namespace pokermath {
namespace {

constexpr std::size_t kHands = 1 << 12;

// Calls a function with random hole cards and board cards, one behind the other.
template <typename Function>
void MeasureHands(benchmark::State& state, int size, Function function) {
  std::vector<int> cards = RandomHandsOf(kHands, size, 0);
  std::size_t hand = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(function(&cards[hand * static_cast<std::size_t>(size)]));
    hand = (hand + 1) % kHands;
  }
}

// Four hole cards and five board cards: value and record.
void BM_GetCombinationOmaha(benchmark::State& state) {
  const PokerLogic logic;
  int record[5];
  MeasureHands(state, 9, [&](int* cards) {
    return logic.getCombinationOmaha(cards, cards + 4, record) + record[0];
  });
}
BENCHMARK(BM_GetCombinationOmaha);

void BM_GetCombinationOmahaFsm5(benchmark::State& state) {
  int record[5];
  MeasureHands(state, 9, [&](int* cards) {
    return getCombinationOmahaFsm5(cards, cards + 4, record) + record[0];
  });
}
BENCHMARK(BM_GetCombinationOmahaFsm5);

void BM_GeneratePokerCombinations(benchmark::State& state) {
  const auto file = std::filesystem::temp_directory_path() / "pokermath_bench.dat";
  const std::string path = file.string();
  PokerLogic logic;
  const bool load = state.range(0) != 0;
  for (auto _ : state) {
    if (!load) std::filesystem::remove(file);
    benchmark::DoNotOptimize(
        logic.generate_PokerCombinations_table(CString(path.begin(), path.end())));
  }
  std::filesystem::remove(file);
}
BENCHMARK(BM_GeneratePokerCombinations)
    ->ArgName("load")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);

void BM_Eval7HandOmaha(benchmark::State& state) {
  const auto file = std::filesystem::temp_directory_path() / "pokermath_bench.dat";
  const std::string path = file.string();
  PokerLogic logic;
  logic.generate_PokerCombinations_table(CString(path.begin(), path.end()));
  std::filesystem::remove(file);
  MeasureHands(state, 9, [&](int* cards) { return logic.eval_7handOmaha(cards, cards + 4); });
}
BENCHMARK(BM_Eval7HandOmaha);

// Before the flop.
void BM_OmahaMatchup(benchmark::State& state) {
  const auto isa = static_cast<Isa>(state.range(0));
  if (isa > BestIsa()) return state.SkipWithError("not on this machine");
  const auto size = static_cast<int>(state.range(1));
  const auto hands = static_cast<int>(state.range(2));
  const std::vector<int> cards = RandomHandsOf(1, size * hands, 0);
  for (auto _ : state) {
    benchmark::DoNotOptimize(CountOmahaMatchup(isa, cards, size, {}, {}));
  }
}
BENCHMARK(BM_OmahaMatchup)
    ->ArgNames({"isa", "cards", "hands"})
    ->ArgsProduct({{0, 1}, {4}, {2, 3, 6}})
    ->ArgsProduct({{0, 1}, {5, 6}, {2}})
    ->Unit(benchmark::kMicrosecond);

// On random boards, to the river.
void BM_OmahaAgainstAll(benchmark::State& state) {
  const auto size = static_cast<int>(state.range(0));
  const auto known = static_cast<std::size_t>(state.range(1));
  MeasureHands(state, size + 5, [&](int* cards) {
    const std::span<const int> hand(cards, static_cast<std::size_t>(size));
    return CountOmahaAgainstAll(BestIsa(), hand, std::span<const int>(cards + size, known),
                                Street::kRiver);
  });
}
BENCHMARK(BM_OmahaAgainstAll)
    ->ArgNames({"cards", "board"})
    ->ArgsProduct({{4, 5}, {5, 4, 3, 0}})
    ->ArgsProduct({{6}, {5, 4, 3}})
    ->Unit(benchmark::kMicrosecond);

// The same on a river, hand by hand, and hand against hand before the flop, board by board.
void BM_OmahaAgainstAllPlain(benchmark::State& state) {
  MeasureHands(state, 11, [](int* cards) {
    const std::span<const int> hand(cards, 6), board(cards + 6, 5);
    const std::uint64_t taken = Bits(hand) | Bits(board);
    const int hero = BestOmahaValue(hand, board);
    std::int64_t wins = 0;
    ForEachOmahaHand<6>([&](int, const std::array<int, 6>& other) {
      if ((Bits(other) & taken) == 0) wins += hero > BestOmahaValue(other, board) ? 1 : 0;
    });
    return wins;
  });
}
BENCHMARK(BM_OmahaAgainstAllPlain)->Unit(benchmark::kMillisecond);

void BM_OmahaMatchupPlain(benchmark::State& state) {
  MeasureHands(state, 12, [](int* cards) {
    const std::span<const int> hand1(cards, 6), hand2(cards + 6, 6);
    const std::uint64_t taken = Bits(hand1) | Bits(hand2);
    std::int64_t wins = 0;
    ForEachOmahaHand<5>([&](int, const std::array<int, 5>& board) {
      if ((Bits(board) & taken) != 0) return;
      wins += BestOmahaValue(hand1, board) > BestOmahaValue(hand2, board) ? 1 : 0;
    });
    return wins;
  });
}
BENCHMARK(BM_OmahaMatchupPlain)->Unit(benchmark::kMillisecond);

template <int cards>
std::vector<typename OmahaSpec<cards>::Hand> TenPercent() {
  OmahaSpec<cards> range;
  range.AddPercent(0, 10);
  return range.Hands();
}

// On random boards, to a street; the rate is that of the range's hands.
template <int cards>
void BM_OmahaAgainstRange(benchmark::State& state) {
  const auto isa = static_cast<Isa>(state.range(0));
  if (isa > BestIsa()) return state.SkipWithError("not on this machine");
  const auto known = static_cast<std::size_t>(state.range(1));
  const auto street = static_cast<Street>(state.range(2));
  const auto range = TenPercent<cards>();
  MeasureHands(state, cards + 5, [&](int* dealt) {
    return OmahaRangeContest<cards>(std::span<const int>(dealt, cards), range,
                                    std::span<const int>(dealt + cards, known), street)
        .Count(isa)
        .wins;
  });
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(range.size()));
}
BENCHMARK(BM_OmahaAgainstRange<4>)
    ->ArgNames({"isa", "board", "to"})
    ->ArgsProduct({{0, 1}, {3, 4, 5}, {5}})
    ->ArgsProduct({{0, 1}, {0}, {3}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OmahaAgainstRange<5>)
    ->ArgNames({"isa", "board", "to"})
    ->ArgsProduct({{0, 1}, {3}, {5}})
    ->Unit(benchmark::kMillisecond);

// The same, run-out by run-out and hand by hand.
void BM_OmahaAgainstRangePlain(benchmark::State& state) {
  const auto range = TenPercent<4>();
  MeasureHands(state, 7, [&](int* dealt) {
    std::uint64_t flop = 0;
    for (int i = 0; i < 7; ++i) flop |= std::uint64_t{1} << dealt[i];
    int board[5] = {dealt[4], dealt[5], dealt[6]};
    std::int64_t wins = 0;
    for (board[3] = 1; board[3] < 52; ++board[3]) {
      for (board[4] = 0; board[4] < board[3]; ++board[4]) {
        const std::uint64_t come = std::uint64_t{1} << board[3] | std::uint64_t{1} << board[4];
        if ((come & flop) != 0) continue;
        const int hero = BestOmahaValue(std::span<const int>(dealt, 4), board);
        for (const auto& hand : range) {
          std::uint64_t cards = 0;
          for (const int card : hand) cards |= std::uint64_t{1} << card;
          if ((cards & (flop | come)) == 0) wins += hero > BestOmahaValue(hand, board) ? 1 : 0;
        }
      }
    }
    return wins;
  });
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(range.size()));
}
BENCHMARK(BM_OmahaAgainstRangePlain)->Unit(benchmark::kMillisecond);

// Before the flop; the rate is that of the trials.
void BM_EquityHandVsRandomCommon(benchmark::State& state) {
  PokerLogic logic;
  const auto size = static_cast<int>(state.range(0));
  std::vector<int> hand = RandomHandsOf(1, size, 0);
  constexpr int kTrials = 100000;
  for (auto _ : state) {
    int trials = kTrials, time = 1000000;
    benchmark::DoNotOptimize(
        logic.EquityHandVsRandomCommon(hand.data(), size, nullptr, 0, 5, trials, time));
  }
  state.SetItemsProcessed(state.iterations() * kTrials);
}
BENCHMARK(BM_EquityHandVsRandomCommon)
    ->ArgName("cards")
    ->Arg(4)
    ->Arg(5)
    ->Unit(benchmark::kMillisecond);

void BM_HighLowMatchup(benchmark::State& state) {
  const auto hands = static_cast<int>(state.range(1));
  const std::vector<int> cards = RandomHandsOf(1, 4 * hands, 0);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        CountHighLowMatchup(static_cast<Isa>(state.range(0)), cards, 4, {}, {}));
  }
}
BENCHMARK(BM_HighLowMatchup)
    ->ArgNames({"isa", "hands"})
    ->ArgsProduct({{0, 1}, {2, 3, 6}})
    ->Unit(benchmark::kMicrosecond);

void BM_RiverEquityHandVsRandomOnRiverHL(benchmark::State& state) {
  const PokerLogic logic;
  int count;
  MeasureHands(state, 9, [&](int* cards) {
    return logic.RiverEquityHandVsRandomOnRiverHL(cards, cards + 4, count);
  });
}
BENCHMARK(BM_RiverEquityHandVsRandomOnRiverHL)->Unit(benchmark::kMicrosecond);

// On flops.
void BM_IsMyHandNutsOmaha(benchmark::State& state) {
  const PokerLogic logic;
  MeasureHands(state, 7, [&](int* cards) { return logic.IsMyHandNutsOmaha(cards, cards + 4, 3); });
}
BENCHMARK(BM_IsMyHandNutsOmaha)->Unit(benchmark::kMicrosecond);

void BM_IsMyHandNutsOmahaCommon(benchmark::State& state) {
  const PokerLogic logic;
  MeasureHands(state, 7,
               [&](int* cards) { return logic.IsMyHandNutsOmahaCommon(cards, 4, cards + 4, 3); });
}
BENCHMARK(BM_IsMyHandNutsOmahaCommon)->Unit(benchmark::kMicrosecond);

// All outs functions, one after the other.
void BM_OutsOmaha(benchmark::State& state) {
  const PokerLogic logic;
  MeasureHands(state, 7, [&](int* cards) {
    int* board = cards + 4;
    CHandOmahaType hand(cards, board, 3);
    int outs[11], nut_outs[11], a, b;
    std::set<std::pair<int, int>> straights, held;
    return logic.GetFlushDrawOutsOmaha(hand, a, b) +
           logic.GetStraightDrawOutsOmaha(cards, board, 3, a) +
           logic.GetFullHouseOutsOmaha(cards, board, 3, a, b) +
           logic.getOutsOmahaCommon(cards, 4, board, 3, outs, nut_outs) +
           getOutsOmahaFsm5Common(cards, 4, board, 3, outs, nut_outs) +
           getOutsOmahaFsm5CommonTwoPairs(cards, 4, board, 3, a) +
           TestStraight(cards, 4, board, 3, outs, straights, held);
  });
}
BENCHMARK(BM_OutsOmaha)->Unit(benchmark::kMicrosecond);

void BM_AllHutchisonPoints(benchmark::State& state) {
  for (auto _ : state) {
    std::int64_t sum = 0;
    int hand[4];
    for (hand[0] = 0; hand[0] < 49; ++hand[0])
      for (hand[1] = hand[0] + 1; hand[1] < 50; ++hand[1])
        for (hand[2] = hand[1] + 1; hand[2] < 51; ++hand[2])
          for (hand[3] = hand[2] + 1; hand[3] < 52; ++hand[3]) sum += HutchisonPointsOmaha(hand);
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(BM_AllHutchisonPoints)->Unit(benchmark::kMillisecond);

// The strongest tenth of all hands; what the first use prepares is not in it.
template <int cards>
void BM_OmahaTenPercent(benchmark::State& state) {
  benchmark::DoNotOptimize(OmahaPercentile(RandomHandsOf(1, cards, 0)));
  for (auto _ : state) {
    OmahaSpec<cards> range;
    range.AddPercent(0, 10);
    benchmark::DoNotOptimize(range);
  }
}
BENCHMARK(BM_OmahaTenPercent<4>)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_OmahaTenPercent<5>)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace pokermath
