// The benchmarks, or with --signature the one number that says whether answers have changed.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string_view>

#include "tests/calculator/signature.h"

int main(int argc, char** argv) {
  if (argc == 2 && std::string_view(argv[1]) == "--signature") {
    return std::puts(pokermath::SignatureOfAnswers().c_str()) < 0 ? 1 : 0;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
