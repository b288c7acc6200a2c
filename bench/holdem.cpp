// Hold'em equity. "Plain" deals every board and evaluates both hands through the HandRanks table
// (the turn: through six-card evaluation), as one would write it first.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "contracts/hand_ranks_builder.h"
#include "contracts/holdem_tables.h"
#include "kernels/matchup.h"
#include "kernels/several_hands.h"
#include "pokermath/cards.h"
#include "pokermath/poker_logic.h"

namespace pokermath {
namespace {

// Offsuit and sharing nothing; pair against suited; two suited hands: the usual and the worst.
const char* const kMatchupTexts[3][2] = {{"AhKd", "QcJs"}, {"7c7d", "AsKs"}, {"AhKh", "QdJd"}};

struct Matchup {
  std::vector<int> hand1;
  std::vector<int> hand2;
};

Matchup MatchupOf(std::int64_t index) {
  return {ParseCards(kMatchupTexts[index][0]).cards, ParseCards(kMatchupTexts[index][1]).cards};
}

PokerLogic& Logic() {
  static PokerLogic logic = [] {
    PokerLogic loaded;
    loaded.HR = BuildHandRanks().entries;
    return loaded;
  }();
  return logic;
}

// Calls visit(board) for every board of kCards out of the 48 cards that are left.
template <int kCards, typename Visit>
void ForEachBoard(const Matchup& matchup, Visit visit) {
  std::vector<int> live;
  for (int card = 0; card < 52; ++card) {
    if (std::ranges::count(matchup.hand1, card) + std::ranges::count(matchup.hand2, card) == 0) {
      live.push_back(card);
    }
  }
  int board[kCards];
  const auto deal = [&](auto& self, int place, std::size_t first) -> void {
    if (place == kCards) return visit(board);
    for (std::size_t i = first; i < live.size(); ++i) {
      board[place] = live[i];
      self(self, place + 1, i + 1);
    }
  };
  deal(deal, 0, 0);
}

void BM_MatchupRiverPlain(benchmark::State& state) {
  const Matchup matchup = MatchupOf(state.range(0));
  const PokerLogic& logic = Logic();
  const auto value = [&logic](const int* board, const std::vector<int>& hand) {
    std::uint32_t place = 53;
    for (int i = 0; i < 5; ++i) {
      place = logic.HR[place + static_cast<std::uint32_t>(board[i] % 13 * 4 + board[i] / 13 + 1)];
    }
    for (const int card : hand) {
      place = logic.HR[place + static_cast<std::uint32_t>(card % 13 * 4 + card / 13 + 1)];
    }
    return place;
  };
  for (auto _ : state) {
    double wins = 0;
    ForEachBoard<5>(matchup, [&](const int* board) {
      const std::uint32_t value1 = value(board, matchup.hand1);
      const std::uint32_t value2 = value(board, matchup.hand2);
      wins += value1 > value2 ? 1 : value1 == value2 ? 0.5 : 0;
    });
    benchmark::DoNotOptimize(wins);
  }
}
BENCHMARK(BM_MatchupRiverPlain)->Arg(0)->Unit(benchmark::kMicrosecond);

void BM_MatchupTurnPlain(benchmark::State& state) {
  const Matchup matchup = MatchupOf(state.range(0));
  const CPokerDeck deck;
  const auto value = [&deck](const int* board, const std::vector<int>& hand) {
    const int words[6] = {deck[board[0]], deck[board[1]], deck[board[2]],
                          deck[board[3]], deck[hand[0]],  deck[hand[1]]};
    int best = 9999;
    for (int left_out = 0; left_out < 6; ++left_out) {
      int five[5];
      for (int i = 0, size = 0; i < 6; ++i) {
        if (i != left_out) five[size++] = words[i];
      }
      best = std::min(best, eval_5hand(five));
    }
    return best;
  };
  for (auto _ : state) {
    double wins = 0;
    ForEachBoard<4>(matchup, [&](const int* board) {
      const int value1 = value(board, matchup.hand1);
      const int value2 = value(board, matchup.hand2);
      wins += value1 < value2 ? 1 : value1 == value2 ? 0.5 : 0;
    });
    benchmark::DoNotOptimize(wins);
  }
}
BENCHMARK(BM_MatchupTurnPlain)->Arg(0)->Unit(benchmark::kMicrosecond);

void BM_Matchup(benchmark::State& state) {
  const Matchup matchup = MatchupOf(state.range(0));
  const auto street = static_cast<Street>(state.range(1));
  const auto isa = static_cast<Isa>(state.range(2));
  if (isa > BestIsa()) state.SkipWithError("this machine lacks the instructions");
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        CountMatchup(isa, Deck::kFull, matchup.hand1.data(), matchup.hand2.data(), street));
  }
}
BENCHMARK(BM_Matchup)
    ->ArgNames({"hands", "board", "isa"})
    ->ArgsProduct({{0, 1, 2}, {4, 5}, {0, 1, 2}})
    ->Unit(benchmark::kMicrosecond);

// The same from what the library knows, and so against every hand.
void BM_KnownMatchup(benchmark::State& state) {
  Matchup matchup = MatchupOf(state.range(0));
  const PokerLogic logic;
  double wins, boards;
  for (auto _ : state) {
    logic.getProbabilityOfWinWithNoBoard(matchup.hand1.data(), matchup.hand2.data(), wins, boards);
    benchmark::DoNotOptimize(wins);
  }
}
BENCHMARK(BM_KnownMatchup)->ArgName("hands")->DenseRange(0, 2);

// The first so many hands of some; dealt out by BM_CalculatorPlain.
void BM_SeveralHands(benchmark::State& state) {
  const std::vector<int> cards =
      ParseCards("AhKd 7s7c QhJh 2c2d 9h8h AsTs QdJd AcKc 5s5h KsQs").cards;
  const auto isa = static_cast<Isa>(state.range(1));
  std::vector<CardSet> hands;
  for (std::size_t i = 0; i < static_cast<std::size_t>(state.range(0)); ++i)
    hands.push_back({cards[2 * i], cards[2 * i + 1]});
  std::vector<std::int64_t> times(std::size_t{1} << hands.size());
  for (auto _ : state) {
    CountSeveralHands(isa, Deck::kFull, hands, {}, Street::kRiver, times);
    benchmark::DoNotOptimize(times.data());
  }
}
BENCHMARK(BM_SeveralHands)
    ->ArgNames({"hands", "isa"})
    ->ArgsProduct({{2, 3, 4, 6, 10}, {0, 1, 2}})
    ->Unit(benchmark::kMicrosecond);

void BM_MatchupOnFlop(benchmark::State& state) {
  const Matchup matchup = MatchupOf(0);
  const std::vector<int> board = ParseCards("2c7dTh").cards;
  for (auto _ : state) {
    benchmark::DoNotOptimize(HoldemHandVsHand(std::span<const int, 2>(matchup.hand1),
                                              std::span<const int, 2>(matchup.hand2), board));
  }
}
BENCHMARK(BM_MatchupOnFlop)->Unit(benchmark::kMicrosecond);

// The trial loop with both hands looked up in the table.
double TrialsPlain(PokerLogic& logic, int* hand, int players) {
  logic.random.SetInterval(0, 51);
  double sum = 0;
  for (int trial = 0; trial < logic.trialCount; ++trial) {
    int used[25] = {hand[0], hand[1]};
    int count = 2;
    const auto draw = [&] {
      int card = logic.random.DrawRandomNumber();
      while (isExist(card, used, count)) card = logic.random.DrawRandomNumber();
      used[count++] = card;
      return card;
    };
    for (int i = 0; i < 5; ++i) draw();
    int seven[7];
    std::copy(used, used + 7, seven);
    const int hero = logic.LookupSingleHands(seven);
    int sharers = 1;
    for (int opponent = 1; opponent < players && sharers > 0; ++opponent) {
      seven[0] = draw();
      seven[1] = draw();
      const int value = logic.LookupSingleHands(seven);
      sharers = value > hero ? 0 : value == hero ? sharers + 1 : sharers;
    }
    if (sharers > 0) sum += 1.0 / sharers;
  }
  return sum / logic.trialCount;
}

void BM_TrialsPlain(benchmark::State& state) {
  int hand[2] = {12, 24};
  for (auto _ : state) {
    std::srand(1);
    benchmark::DoNotOptimize(TrialsPlain(Logic(), hand, static_cast<int>(state.range(0))));
  }
}
BENCHMARK(BM_TrialsPlain)->ArgName("players")->Arg(2)->Arg(6)->Unit(benchmark::kMillisecond);

void BM_Trials(benchmark::State& state) {
  int hand[2] = {12, 24};
  for (auto _ : state) {
    std::srand(1);
    benchmark::DoNotOptimize(
        Logic().getProbabilityOfWin(hand, nullptr, 0, static_cast<int>(state.range(0))));
  }
}
BENCHMARK(BM_Trials)->ArgName("players")->Arg(2)->Arg(6)->Unit(benchmark::kMillisecond);

void BM_AllMatchups(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        AllEquityRecords(Deck::kFull, static_cast<Street>(state.range(0)), {}));
  }
}
BENCHMARK(BM_AllMatchups)->ArgName("board")->Arg(4)->Arg(5)->Unit(benchmark::kMillisecond);

void BM_EquityReport(benchmark::State& state) {
  const std::filesystem::path path =
      std::filesystem::temp_directory_path() / "pokermath_bench_report";
  PokerLogic logic;
  for (auto _ : state) {
    std::filesystem::remove(path);
    logic.generate_equity_table(path.wstring());
  }
  std::filesystem::remove(path);
}
BENCHMARK(BM_EquityReport)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
}  // namespace pokermath
