// One question on several threads. A calculation is cut into steps; their sums are whole numbers
// that add up in any order, so the answer is the same to the last bit however the steps are shared
// out. The library starts no thread: these are the host's.

#include <pokermath/calculator.h>
#include <pokermath/cards.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <thread>
#include <vector>

using namespace pokermath;

// Takes steps until none is left.
void TakeSteps(const Calculation& calculation, std::atomic<std::int64_t>& next, Sums& sums) {
  for (std::int64_t step; (step = next++) < calculation.steps();) {
    calculation.Do(step, step + 1, sums);
  }
}

// For counts. A sample to a standard error has far more steps than it needs: sampling.cpp shows how
// it is known when they are enough.
Result<EquityAnswer> CountOnThreads(const EquityQuestion& question, std::size_t threads) {
  const Result<Calculation> calculation = Plan(question);
  if (!calculation) return calculation.error();
  if (calculation->method() != Method::kExact) return Error{.text = "that would be sampled"};

  std::vector<Sums> sums(threads, calculation->NewSums());
  std::atomic<std::int64_t> next = 0;
  {
    std::vector<std::jthread> workers;
    for (Sums& of_thread : sums) {
      workers.emplace_back(TakeSteps, std::cref(*calculation), std::ref(next), std::ref(of_thread));
    }
  }  // joins them
  for (std::size_t i = 1; i < threads; ++i) sums[0].Add(sums[i]);
  return calculation->Answer(sums[0]);
}

int main() {
  const Result<RangeReading> range = ReadRange(Game::kHoldem, "30%");
  const Result<CardSet> board = ReadCardSet("2c7dTh");
  if (!range || !board) return std::puts("these are texts of ours"), 1;
  const EquityQuestion question{.players = {range->range, HandRange::Every(Game::kHoldem)},
                                .board = *board,
                                .method = Method::kExact,
                                .detail = {.hands = true}};

  const std::size_t threads = std::max(2u, std::thread::hardware_concurrency());
  const Result<EquityAnswer> shared = CountOnThreads(question, threads);
  const Result<EquityAnswer> alone = Calculate(question);
  if (!shared) return std::fprintf(stderr, "%s\n", shared.error().text.c_str()), 1;
  if (!alone) return std::fprintf(stderr, "%s\n", alone.error().text.c_str()), 1;
  std::printf("%.3f %% of %.0f cases\n", 100 * shared->players[0].total.equity,
              shared->cases.Value());
  const bool same = shared->players[0].total.equity == alone->players[0].total.equity &&
                    shared->cases.units == alone->cases.units;
  std::printf("%s as on one thread\n", same ? "the same" : "not the same");
}
