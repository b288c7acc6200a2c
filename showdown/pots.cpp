// Pots and side pots.
//
// Each pass settles one pot. A sole winner takes back his stake and as much from every other
// player. Several winners take from everybody as much as the smallest of them has staked, 1000
// chips at most, and share it. Stakes of many thousands need many passes of 1000 that are all
// alike; these are made at once.

#include <algorithm>
#include <limits>

#include "pokermath/showdown.h"

namespace pokermath {
namespace {

constexpr int kMostAtOnce = 1000;

// What happens in a pass, and how many times it happens one after the other.
struct Pass {
  int times = 1;
  std::vector<int> winners;
  std::vector<int> paid;          // by seat
  std::vector<std::int64_t> won;  // by seat
};

class Settlement {
 public:
  Settlement(std::span<int> stakes, std::span<int> scores) : stakes_(stakes), scores_(scores) {}

  // Settles the next pot; false when all stakes are gone.
  bool Next(Pass& pass) {
    pass.times = 1;
    pass.winners.clear();
    pass.paid.assign(stakes_.size(), 0);
    pass.won.assign(stakes_.size(), 0);
    best_ = 0;
    bool any = false;
    for (std::size_t i = 0; i < stakes_.size(); ++i) {
      if (stakes_[i] == 0) continue;
      any = true;
      best_ = std::max(best_, scores_[i]);
    }
    for (std::size_t i = 0; i < stakes_.size(); ++i) {
      if (stakes_[i] != 0 && scores_[i] == best_) pass.winners.push_back(static_cast<int>(i));
    }
    if (pass.winners.empty()) {
      GiveBack(pass);
    } else if (pass.winners.size() == 1) {
      PaySoleWinner(pass);
    } else {
      PayWinners(pass);
    }
    return any;
  }

 private:
  int& StakeOf(int seat) { return stakes_[static_cast<std::size_t>(seat)]; }
  int& ScoreOf(int seat) { return scores_[static_cast<std::size_t>(seat)]; }

  // Nobody can win what is left.
  void GiveBack(Pass& pass) {
    std::ranges::copy(stakes_, pass.paid.begin());
    std::ranges::copy(stakes_, pass.won.begin());
    std::ranges::fill(stakes_, 0);
  }

  void PaySoleWinner(Pass& pass) {
    const int winner = pass.winners[0];
    pass.won[static_cast<std::size_t>(winner)] = Collect(StakeOf(winner), pass);
    ScoreOf(winner) = 0;
  }

  void PayWinners(Pass& pass) {
    const int most =
        GetMinVinnerBet(stakes_.data(), scores_.data(), static_cast<int>(stakes_.size()), best_);
    pass.times = PassesAlike(most);
    const std::int64_t pot = Collect(most, pass);
    for (std::size_t i = 0; i < stakes_.size(); ++i) {
      stakes_[i] -= (pass.times - 1) * pass.paid[i];
    }
    const auto winners = static_cast<std::int64_t>(pass.winners.size());
    std::int64_t odd = pot % winners;
    for (const int winner : pass.winners) {
      pass.won[static_cast<std::size_t>(winner)] = pot / winners + odd;
      odd = 0;
      if (StakeOf(winner) == 0) ScoreOf(winner) = 0;
    }
  }

  // Everybody pays up to `most`.
  std::int64_t Collect(int most, Pass& pass) {
    std::int64_t pot = 0;
    for (std::size_t i = 0; i < stakes_.size(); ++i) {
      pass.paid[i] = std::min(stakes_[i], most);
      stakes_[i] -= pass.paid[i];
      pot += pass.paid[i];
    }
    return pot;
  }

  // As long as everybody who pays has more than the most that is taken at once, nothing changes
  // from pass to pass but the stakes.
  int PassesAlike(int most) const {
    if (most < kMostAtOnce) return 1;
    int smallest = std::numeric_limits<int>::max();
    for (const int stake : stakes_) {
      if (stake != 0) smallest = std::min(smallest, stake);
    }
    return std::max(1, (smallest - 1) / kMostAtOnce);
  }

  std::span<int> stakes_;
  std::span<int> scores_;
  int best_ = 0;
};

}  // namespace

std::vector<Pot> SplitPots(std::span<const int> stakes, std::span<const int> scores) {
  std::vector<int> left(stakes.begin(), stakes.end());
  std::vector<int> strength(scores.begin(), scores.end());
  Settlement settlement(left, strength);
  std::vector<Pot> pots;
  for (Pass pass; settlement.Next(pass);) {
    if (pots.empty() || pots.back().winners != pass.winners) {
      pots.push_back({.winners = pass.winners,
                      .paid = std::vector<std::int64_t>(stakes.size()),
                      .won = std::vector<std::int64_t>(stakes.size())});
    }
    Pot& pot = pots.back();
    for (std::size_t i = 0; i < stakes.size(); ++i) {
      const std::int64_t paid = std::int64_t{pass.times} * pass.paid[i];
      pot.chips += paid;
      pot.paid[i] += paid;
      pot.won[i] += pass.times * pass.won[i];
    }
  }
  return pots;
}

}  // namespace pokermath

int GetMinVinnerBet(int stake[], int score[], int n, int best) {
  int smallest = pokermath::kMostAtOnce;
  for (int i = 0; i < n; ++i) {
    if (stake[i] != 0 && score[i] == best) smallest = std::min(smallest, stake[i]);
  }
  return smallest;
}

void GameResult(int stake[], int score[], int winnings[], int n) {
  const auto seats = static_cast<std::size_t>(std::max(n, 0));
  pokermath::Settlement settlement({stake, seats}, {score, seats});
  for (pokermath::Pass pass; settlement.Next(pass);) {
    for (std::size_t i = 0; i < seats; ++i) {
      winnings[i] = static_cast<int>(winnings[i] + pass.times * pass.won[i]);
    }
  }
}
