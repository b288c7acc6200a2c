// Random Omaha deals.

#ifndef POKERMATH_CONTRACTS_OMAHA_DEALING_H_
#define POKERMATH_CONTRACTS_OMAHA_DEALING_H_

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "contracts/stopwatch.h"
#include "kernels/hole_cards.h"
#include "pokermath/ranges.h"

namespace pokermath {

inline constexpr int kBetweenLooks = 10000;  // deals, at the clock

/// Draws cards that are not there yet.
class Dealing {
 public:
  Dealing(EasyRandom& random, std::uint64_t used) : random_(random), used_(used) {}

  int Draw() {
    int card;
    do {
      card = random_.DrawRandomNumber();
    } while ((used_ >> card & 1) != 0);
    used_ |= Bit(card);
    return card;
  }

 private:
  EasyRandom& random_;
  std::uint64_t used_;
};

/// Makes deals until there are enough or the time is up. deal() gives the hero's share of one.
template <typename Deal>
double SampleInTime(int& trials, int& time, const Stopwatch& stopwatch, Deal deal) {
  double wins = 0;
  int count = 0;
  for (int i = 0; i < trials; ++i) {
    wins += deal();
    ++count;
    if (i % kBetweenLooks == 0 && stopwatch.Milliseconds() > time) break;
  }
  trials = count;
  time = stopwatch.Milliseconds();
  return wins / count * 100;
}

/// Deals a board and a hand of the same size to one opponent until there are enough deals or the
/// time is up.
///
/// @param share  of the pot, from the opponent's hand and the board
template <typename Share>
double SampleVsRandom(EasyRandom& random, std::span<const int> hand, std::span<const int> board,
                      int target, int& trials, int& time, const Share& share) {
  const Stopwatch stopwatch;
  random.SetInterval(0, 51);
  random.SetTimerSeed();
  std::array<int, 5> cards{};
  std::copy(board.begin(), board.end(), cards.begin());
  std::vector<int> other(hand.size());
  return SampleInTime(trials, time, stopwatch, [&] {
    Dealing dealing(random, Bits(hand) | Bits(board));
    for (std::size_t i = board.size(); i < static_cast<std::size_t>(target); ++i)
      cards[i] = dealing.Draw();
    for (int& card : other) card = dealing.Draw();
    return share(std::span<const int>(other), CardsOf(cards.data(), target));
  });
}

}  // namespace pokermath

#endif  // POKERMATH_CONTRACTS_OMAHA_DEALING_H_
