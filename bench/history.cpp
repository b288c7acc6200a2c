// Hand-history files: bytes a second.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "pokermath/hand_history.h"

namespace pokermath {
namespace {

// Of so many megabytes.
std::string HistoryFile(std::int64_t megabytes) {
  const std::size_t bytes = static_cast<std::size_t>(megabytes) << 20;
  const auto path = (std::filesystem::temp_directory_path() / "pokermath_bench.txt").string();
  std::string text;
  while (text.size() < bytes) {
    text +=
        "Game #1234567890: Omaha Pot Limit (\xE2\x82\xAC"
        "0.50/\xE2\x82\xAC"
        "1.00)\r\n"
        "Seat 1: Hero (\xE2\x82\xAC"
        "100.00 in chips)\r\nDealt to Hero [Ah Kd 7s 7c]\r\n"
        "Villain: raises \xE2\x82\xAC"
        "2 to \xE2\x82\xAC"
        "3\r\nHero: calls \xE2\x82\xAC"
        "3\r\n\r\n";
  }
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

template <int (*function)(CString, __int64&, CStringArray&)>
void BM_ReadHistory(benchmark::State& state) {
  const std::string path = HistoryFile(state.range(0));
  const CString name(path.begin(), path.end());
  __int64 position = 0;
  for (auto _ : state) {
    position = 0;
    CStringArray lines;
    benchmark::DoNotOptimize(function(name, position, lines));
  }
  state.SetBytesProcessed(state.iterations() * position);
  std::filesystem::remove(path);
}
BENCHMARK(BM_ReadHistory<ReadHistoryFile>)
    ->ArgName("mb")
    ->Arg(4)
    ->Arg(64)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadHistory<ReadHistoryFileUTF8>)
    ->ArgName("mb")
    ->Arg(4)
    ->Arg(64)
    ->Unit(benchmark::kMillisecond);

void BM_HistoryReader(benchmark::State& state) {
  const std::string path = HistoryFile(state.range(0));
  std::int64_t position = 0;
  for (auto _ : state) {
    HistoryReader reader(path);
    CStringArray lines;
    do {
      lines.clear();
      reader.Read(lines);
    } while (reader.more());
    position = reader.position();
  }
  state.SetBytesProcessed(state.iterations() * position);
  std::filesystem::remove(path);
}
BENCHMARK(BM_HistoryReader)->ArgName("mb")->Arg(4)->Arg(64)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace pokermath
