// The HandRanks table: building, loading, and evaluating every seven-card hand through it. "Plain"
// builds it one insertion after the other.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>

#include "contracts/hand_ranks_builder.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

void BM_BuildHandRanksPlain(benchmark::State& state) {
  for (auto _ : state) {
    PokerLogic logic;
    logic.HR.resize(kHandRanksEntries, 0);
    const auto id_at = [&logic](int n) {
      return static_cast<__int64>(logic.IDs[static_cast<std::size_t>(n)]);
    };
    for (int n = 0; n < logic.numIDs; ++n) {
      for (int card = 1; card <= 52; ++card) {
        const __int64 id = logic.MakeID(id_at(n), card);
        if (logic.numcards < 7) logic.SaveID(id);
      }
    }
    for (int n = 0; n < logic.numIDs; ++n) {
      const auto row = static_cast<std::size_t>(n) * 53 + 53;
      for (int card = 1; card <= 52; ++card) {
        const __int64 id = logic.MakeID(id_at(n), card);
        const int entry = logic.numcards < 7 ? logic.SaveID(id) * 53 + 53 : logic.DoEval(id);
        logic.HR[row + static_cast<std::size_t>(card)] = static_cast<std::uint32_t>(entry);
      }
      if (logic.numcards >= 6) logic.HR[row] = static_cast<std::uint32_t>(logic.DoEval(id_at(n)));
    }
    benchmark::DoNotOptimize(logic.HR.data());
  }
}
BENCHMARK(BM_BuildHandRanksPlain)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_BuildHandRanks(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(BuildHandRanks());
}
BENCHMARK(BM_BuildHandRanks)->Unit(benchmark::kMillisecond);

void BM_LoadHandRanks(benchmark::State& state) {
  const std::string path =
      (std::filesystem::temp_directory_path() / "pokermath_bench_hand_ranks").string();
  if (!SaveHandRanks(path, BuildHandRanks().entries)) state.SkipWithError("cannot write the file");
  for (auto _ : state) {
    LargeTable<std::uint32_t> entries;
    if (!LoadHandRanks(path, entries)) state.SkipWithError("cannot load the file");
  }
  std::filesystem::remove(path);
}
BENCHMARK(BM_LoadHandRanks)->Unit(benchmark::kMillisecond);

void BM_AllSevenCardHandsThroughTable(benchmark::State& state) {
  const HandRanks table = BuildHandRanks();
  const std::uint32_t* entries = table.entries.data();
  std::uint64_t sum = 0;
  for (auto _ : state) {
    sum = 0;
    for (unsigned c1 = 1; c1 <= 46; ++c1) {
      const std::uint32_t* row1 = entries + entries[53 + c1];
      for (unsigned c2 = c1 + 1; c2 <= 47; ++c2) {
        const std::uint32_t* row2 = entries + row1[c2];
        for (unsigned c3 = c2 + 1; c3 <= 48; ++c3) {
          const std::uint32_t* row3 = entries + row2[c3];
          for (unsigned c4 = c3 + 1; c4 <= 49; ++c4) {
            const std::uint32_t* row4 = entries + row3[c4];
            for (unsigned c5 = c4 + 1; c5 <= 50; ++c5) {
              const std::uint32_t* row5 = entries + row4[c5];
              for (unsigned c6 = c5 + 1; c6 <= 51; ++c6) {
                const std::uint32_t* row6 = entries + row5[c6];
                std::uint32_t row_sum = 0;
                for (unsigned c7 = c6 + 1; c7 <= 52; ++c7) row_sum += row6[c7];
                sum += row_sum;
              }
            }
          }
        }
      }
    }
    benchmark::DoNotOptimize(sum);
  }
  if (sum != 1528972275512u) state.SkipWithError("the sum is wrong");
  state.SetItemsProcessed(state.iterations() * 133784560);
}
BENCHMARK(BM_AllSevenCardHandsThroughTable)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace pokermath
