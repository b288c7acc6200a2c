// Hand-history files: bytes a second.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "pokermath/hand_history.h"

namespace pokermath {
namespace {

constexpr std::size_t kBytes = std::size_t{64} << 20;

std::string HistoryFile() {
  const auto path = (std::filesystem::temp_directory_path() / "pokermath_bench.txt").string();
  std::string text;
  while (text.size() < kBytes) {
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
  const std::string path = HistoryFile();
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
BENCHMARK(BM_ReadHistory<ReadHistoryFile>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadHistory<ReadHistoryFileUTF8>)->Unit(benchmark::kMillisecond);

void BM_HistoryReader(benchmark::State& state) {
  const std::string path = HistoryFile();
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
BENCHMARK(BM_HistoryReader)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace pokermath
